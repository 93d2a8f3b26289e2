// A program that has a name on the session's bus and notes what it is called for.
//   bus-service NAME RECORD answer|refuse|silent

#include <cstring>
#include <fstream>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace
{

class Service : public QDBusVirtualObject
{
public:
    Service(const char* record, const char* mode) : record_(record), mode_(mode) {}
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        std::ofstream out(record_, std::ios::app);
        out << message.path().toStdString() << ' ' << message.interface().toStdString() << ' '
            << message.member().toStdString() << ' ' << message.signature().toStdString();
        if (message.arguments().size() == 2)
            for (const QString& address : message.arguments()[0].toStringList())
                out << ' ' << address.toStdString();
        out << std::endl;
        if (std::strcmp(mode_, "silent") == 0)
            message.setDelayedReply(true);
        else if (std::strcmp(mode_, "refuse") == 0)
            bus.send(message.createErrorReply("org.test.Error", "not today"));
        else
            bus.send(message.createReply());
        return true;
    }

private:
    const char* record_;
    const char* mode_;
};

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 4)
        return 2;
    Service service(argv[2], argv[3]);
    QDBusConnection bus = QDBusConnection::sessionBus();
    // the object before the name, which lets the calls in
    if (!bus.registerVirtualObject("/", &service, QDBusConnection::SubPath) ||
        !bus.registerService(argv[1]))
        return 1;
    // ends with the bus
    bus.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected",
                &application, SLOT(quit()));
    return QCoreApplication::exec();
}
