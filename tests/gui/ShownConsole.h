#pragma once

#include "app/ConsoleView.h"
#include "controls/ConsoleText.h"

#include <QApplication>
#include <QClipboard>

namespace zrktest {

/// A console text and its view.
struct ShownConsole {
    zrk::ConsoleText text;
    zrk::ConsoleView view;

    ShownConsole() {
        text.onEdit([this](qsizetype removed, const QString& inserted, zrk::TextOrigin) {
            view.follow(text.text(), removed, inserted.size());
        });
    }
    void say(const QByteArray& piece) { text.append(QString::fromLatin1(piece)); }
    QString copied() {
        QApplication::clipboard()->clear();
        view.selectAll();
        view.copy();
        return QApplication::clipboard()->text();
    }
};

} // namespace zrktest
