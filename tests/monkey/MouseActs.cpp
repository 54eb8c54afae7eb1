#include "monkey/Acts.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>
#include <QUrl>
#include <QWheelEvent>

namespace zrkmonkey {
namespace {

void dropFile(QWidget& target, const QPoint& at, const QString& path) {
    QMimeData dragged;
    dragged.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter(at, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted())
        return;
    QDropEvent drop(at, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
}

void turnWheel(QWidget& target, const QPoint& at, int steps) {
    constexpr int kStep = 120;
    QWheelEvent turned(at, target.mapToGlobal(at), {}, {0, kStep * steps}, Qt::NoButton, Qt::NoModifier,
                       Qt::NoScrollPhase, false);
    QApplication::sendEvent(&target, &turned);
}

} // namespace

Acts::Act Acts::ofMouse() {
    if (pick(3) == 0)
        return drop();
    return inConsole(*m_room.window->findChild<QPlainTextEdit*>("txtStatus")->viewport());
}

Acts::Act Acts::drop() {
    static constexpr const char* kFrames[]{"fraFlashLdr", "fraExecutables", "fraImages"};
    auto* frame = m_room.window->findChild<QWidget*>(QString::fromLatin1(oneOf(kFrames)));
    const QPoint at(static_cast<int>(pick(static_cast<std::size_t>(frame->width()))),
                    static_cast<int>(pick(static_cast<std::size_t>(frame->height()))));
    return {"drop into " + frame->objectName(),
            [frame, at, path = file(false)] { dropFile(*frame, at, path); }};
}

/// Acts in the console. The button may stay down, until another act or a box releases it.
Acts::Act Acts::inConsole(QWidget& viewport) {
    const QPoint at(static_cast<int>(pick(200)), static_cast<int>(pick(60)));
    QWidget* target = &viewport;
    switch (pick(6)) {
    case 0:
        return {"press in the console", [=] { QTest::mousePress(target, Qt::LeftButton, {}, at); }};
    case 1:
        return {"release in the console", [=] { QTest::mouseRelease(target, Qt::LeftButton, {}, at); }};
    case 2:
        return {"double click in the console", [=] { QTest::mouseDClick(target, Qt::LeftButton, {}, at); }};
    case 3:
        return {"middle click in the console", [=] { QTest::mouseClick(target, Qt::MiddleButton, {}, at); }};
    case 4:
        return {"turn the wheel",
                [=, steps = static_cast<int>(pick(9)) - 4] { turnWheel(*target, at, steps); }};
    default:
        return {"menu of the console", [=] {
                    QContextMenuEvent asked(QContextMenuEvent::Mouse, at, target->mapToGlobal(at));
                    QApplication::sendEvent(target, &asked);
                }};
    }
}

} // namespace zrkmonkey
