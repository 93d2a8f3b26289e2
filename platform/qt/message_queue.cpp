#include "platform/qt/message_queue.h"

#include "platform/message_scope.h"
#include "platform/message_translator.h"
#include "platform/qt/capture.h"
#include "platform/qt/input.h"
#include "platform/qt/keys.h"
#include "platform/qt/message_scope.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <QApplication>
#include <QThread>
#include <QTimer>
#include <utility>

namespace pavane
{

namespace
{

/// Hands out posted messages while a loop of the toolkit runs.
class Pump : public QObject
{
public:
    static QEvent::Type request()
    {
        static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
        return type;
    }
    bool event(QEvent* e) override;
};

/// Never destroyed: objects of static storage may still post.
struct Queue {
    std::deque<MSG> messages;
    Pump* pump = nullptr;
    bool pumpCalled = false;
    bool waits = false;
    int waitLevel = 0;
    const QEvent* handedOut = nullptr;
    bool quits = false;
    int quitCode = 0;
    int running = 0;  ///< RunMessages calls
    int watchdog = 0;
    int modifiers = -1;
};

Queue& queue()
{
    static auto* const made = new Queue;
    return *made;
}

int loopLevel() { return QThread::currentThread()->loopLevel(); }

void callPump()
{
    Queue& q = queue();
    if (!q.pump || q.pumpCalled)
        return;
    q.pumpCalled = true;
    QCoreApplication::postEvent(q.pump, new QEvent(Pump::request()));
}

std::deque<MSG>::iterator firstHeard()
{
    Queue& q = queue();
    return std::find_if(q.messages.begin(), q.messages.end(),
                        [](const MSG& m) { return isHeard(m); });
}

/// Takes the first message of a window that lives and is heard.
bool takeFirst(MSG& message)
{
    Queue& q = queue();
    for (;;) {
        const auto at = firstHeard();
        if (at == q.messages.end())
            return false;
        message = std::move(*at);
        q.messages.erase(at);
        const bool lives = peerOf(message.hwnd) || (message.input && message.input->target);
        if (!lives)
            continue;
        // what is left when the loop ends has to reach the main loop
        if (!q.messages.empty())
            callPump();
        if (message.input && message.message == WM_RBUTTONDOWN)
            takeRightPress(true);
        return true;
    }
}

bool Pump::event(QEvent* e)
{
    if (e->type() != request())
        return QObject::event(e);
    Queue& q = queue();
    q.pumpCalled = false;
    MSG message;
    while (!isLoopWaiting() && takeFirst(message)) {
        // input was offered when it came
        if (message.input || !OfferToTranslator(message))
            DispatchMessage(message);
    }
    return true;
}

/// Lets the toolkit work while input becomes messages.
void letWork(QEventLoop::ProcessEventsFlags flags)
{
    Queue& q = queue();
    const bool waited = std::exchange(q.waits, true);
    const int level = std::exchange(q.waitLevel, loopLevel());
    // What was posted together with the event that this loop runs in would not end the wait.
    QCoreApplication::sendPostedEvents();
    // what nobody may hear now must not keep input from those who are heard
    if (firstHeard() == q.messages.end())
        QCoreApplication::processEvents(flags);
    q.waits = waited;
    q.waitLevel = level;
}

}  // namespace

bool isLoopWaiting() { return queue().waits && queue().waitLevel == loopLevel(); }
bool isHandedOut(const QEvent* event) { return queue().handedOut == event; }

void queueInput(QWidget* widget, const QEvent& event, HWND captured)
{
    std::unique_ptr<QEvent> copy(event.clone());
    const WindowPeer* const peer = captured ? peerOf(captured) : peerOf(widget);
    MSG message;
    if (peer)
        message = inputMessage(*peer, widget, *copy);
    if (!captured)
        message.input = std::make_shared<InputEvent>(InputEvent{widget, std::move(copy)});
    queue().messages.push_back(std::move(message));
}

void noteQuit(int code)
{
    queue().quits = true;
    queue().quitCode = code;
    callPump();  // wakes who waits
}

void wakeQueue()
{
    if (!queue().messages.empty())
        callPump();
}

void clearQueue()
{
    queue().messages.clear();
    queue().quits = false;
}

void startQueue()
{
    if (!queue().pump)
        queue().pump = new Pump;
}

void stopQueue()
{
    clearQueue();
    delete std::exchange(queue().pump, nullptr);
    queue().pumpCalled = false;
}

int GetMessage(MSG& message)
{
    Queue& q = queue();
    const unsigned changes = captureChanges();
    QTimer watchdog;
    bool timedOut = false;
    if (q.watchdog > 0) {
        QObject::connect(&watchdog, &QTimer::timeout, [&] { timedOut = true; });
        watchdog.setSingleShot(true);
        watchdog.start(q.watchdog);
    }
    message = MSG();
    for (;;) {
        if (q.quits || !QCoreApplication::instance()) {
            // RunMessages has to see it as well
            q.quits = q.quits && q.running > 0;
            message.message = WM_QUIT;
            return 0;
        }
        if (changes != captureChanges())
            return 1;
        if (takeFirst(message))
            return 1;
        message = MSG();
        if (timedOut) {
            message.message = WM_CANCELMODE;
            return 1;
        }
        letWork(QEventLoop::WaitForMoreEvents);
    }
}

int PeekMessage(MSG& message)
{
    if (takeFirst(message))
        return 1;
    letWork(QEventLoop::AllEvents);
    if (takeFirst(message))
        return 1;
    message = MSG();
    return 0;
}

int HandOutMessages(int milliseconds, CWnd* only)
{
    using Clock = std::chrono::steady_clock;
    const auto until = Clock::now() + std::chrono::milliseconds(milliseconds);
    const MessageScope scope(only ? only->GetSafeHwnd() : HWND());
    const Queue& q = queue();
    MSG message;
    while (!q.quits && QCoreApplication::instance() && PeekMessage(message)) {
        DispatchMessage(message);
        if (Clock::now() >= until)
            break;
    }
    return !q.quits;
}

LRESULT DispatchMessage(const MSG& message)
{
    if (!message.input)
        return SendMessage(message.hwnd, message.message, message.wParam, message.lParam);
    const std::shared_ptr<InputEvent> input = message.input;
    if (!input->target)
        return 0;
    if (message.message == WM_RBUTTONDOWN)
        takeRightPress(false);
    const QEvent* const before = std::exchange(queue().handedOut, input->event.get());
    QCoreApplication::sendEvent(input->target, input->event.get());
    queue().handedOut = before;
    return 0;
}

int PostMessage(HWND window, unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (!peerOf(window))
        return 0;
    MSG posted;
    posted.hwnd = window;
    posted.message = message;
    posted.wParam = wParam;
    posted.lParam = lParam;
    queue().messages.push_back(std::move(posted));
    callPump();
    return 1;
}

void PostQuitMessage(int code)
{
    noteQuit(code);
    if (queue().running > 0)
        QCoreApplication::exit(code);
}

int RunMessages()
{
    Queue& q = queue();
    ++q.running;
    if (!q.quits && QCoreApplication::instance())
        QApplication::exec();
    --q.running;
    q.quits = false;
    return q.quitCode;
}

/// Messages have no flag of it.
constexpr unsigned overriddenAlt = 0x20;

short GetKeyState(int key)
{
    const Queue& q = queue();
    const unsigned real =
        heldFlags(QGuiApplication::mouseButtons(), QGuiApplication::keyboardModifiers());
    const unsigned keys = q.modifiers >= 0 ? static_cast<unsigned>(q.modifiers) : real;
    bool held = false;
    switch (key) {
    case VK_SHIFT:
        held = keys & MK_SHIFT;
        break;
    case VK_CONTROL:
        held = keys & MK_CONTROL;
        break;
    case VK_MENU:
        held = q.modifiers < 0 ? QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier)
                               : keys & overriddenAlt;
        break;
    case VK_LBUTTON:
        held = real & MK_LBUTTON;
        break;
    case VK_RBUTTON:
        held = real & MK_RBUTTON;
        break;
    case VK_MBUTTON:
        held = real & MK_MBUTTON;
        break;
    default:
        break;
    }
    return static_cast<short>(held ? -0x8000 : 0);
}

void SetKeyStateOverride(int modifiers) { queue().modifiers = modifiers; }
void SetMessageWatchdog(int milliseconds) { queue().watchdog = milliseconds; }

}  // namespace pavane
