#include "platform/qt/look.h"

#include "platform/core/dialog_units.h"
#include "platform/qt/WindowPeer.h"

#include <QApplication>
#include <QDialog>
#include <QFont>
#include <QPalette>
#include <QPushButton>

namespace pavane
{

namespace
{

QPalette lightPalette()
{
    const QColor text(0x1E, 0x22, 0x28);
    const QColor faint(0x9A, 0x9F, 0xA6);
    QPalette palette(QColor(0xFA, 0xFA, 0xFB), QColor(0xF2, 0xF3, 0xF5));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xF6, 0xF8, 0xFA));
    palette.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xF0));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::BrightText})
        palette.setColor(role, text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, QColor(0x2B, 0x6C, 0xB0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xC3, 0xCB, 0xD4));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, text);
    palette.setColor(QPalette::Link, QColor(0x2B, 0x6C, 0xB0));
    return palette;
}

}  // namespace

bool canShowWindows() { return qobject_cast<QApplication*>(QCoreApplication::instance()); }

void applyLook()
{
    QApplication::setPalette(lightPalette());
    QFont font = qtFontOf(dialogFont());
    if (qApp->devicePixelRatio() > 1) {
        // widths of whole units would space letters unevenly between the pixels of a fine screen
        font.setHintingPreference(QFont::PreferNoHinting);
        font.setStyleStrategy(QFont::PreferDefault);
        font.setKerning(true);
    }
    QApplication::setFont(font);
}

void clearButtonIcons(const QDialog& dialog)
{
    for (QPushButton* const button : dialog.findChildren<QPushButton*>())
        button->setIcon(QIcon());
}

QWidget* frontWindow()
{
    if (!canShowWindows())
        return nullptr;
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget* active = QApplication::activeWindow(); active && active->isVisible())
        return active;
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->isVisible() && top->windowType() == Qt::Window)
            return top;
    return nullptr;
}

}  // namespace pavane
