#include "app/KeysHelp.h"

#include "app/LoaderWidgets.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>

#include <array>

namespace zrk {
namespace {

struct Key {
    const char* name; ///< "" makes `what` a heading
    const char* what;
};

constexpr std::array kKeys{
    Key{"", "In the window"},
    Key{"Alt with an underlined letter", "goes to a control or presses it"},
    Key{"Alt+F", "goes to Flash image; pressed again it opens the File menu"},
    Key{"Tab, Shift+Tab", "go from control to control, Space presses or ticks"},
    Key{"", "In the console"},
    Key{"Scroll Lock", "holds the view and lets it go on"},
    Key{"End", "back to the end of a held view; not sent to the board"},
    Key{"Ctrl+F", "finds text; Ctrl+Shift+F in terminal mode"},
    Key{"Ctrl+Shift+S", "switches between the text and the Screen view, a terminal"},
    Key{"Alt+B", "switches DTR off for a tenth of a second, which resets a board that is wired so"},
    Key{"", "In terminal mode"},
    Key{"Enter, Tab, Escape, Ctrl+A to Z", "are sent as their codes"},
    Key{"Arrows, Home, F1 to F12 and the like", "are sent as a terminal's sequences"},
    Key{"Ctrl+Shift+C, Ctrl+Shift+V", "copy and paste; Escape stops a long paste"},
    Key{"Alt with a letter", "in the Screen view: is sent as Escape and the letter"},
    Key{"Shift+Page Up, Shift+Page Down", "turn the pages"},
    Key{"Shift+Tab", "leaves the console"},
    Key{"", "While waiting for the board"},
    Key{"Escape", "cancels"},
    Key{"Alt+B", "switches DTR off for a tenth of a second"},
};

QLabel* makeText(const char* text, QWidget* parent) {
    auto* label = new QLabel(QString::fromLatin1(text), parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

void showKeysHelp(QWidget* parent) {
    const QString name = QStringLiteral("frmKeys");
    if (auto* open = parent->findChild<QDialog*>(name)) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto* dialog = named(new QDialog(parent), name);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("Keys"));
    auto* grid = new QGridLayout(dialog);
    grid->setHorizontalSpacing(20);
    int row = 0;
    for (const Key& key : kKeys) {
        QLabel* what = makeText(key.what, dialog);
        if (*key.name == '\0') {
            QFont bold = what->font();
            bold.setBold(true);
            what->setFont(bold);
            if (row > 0)
                what->setContentsMargins(0, 8, 0, 0);
            grid->addWidget(what, row++, 0, 1, 2);
            continue;
        }
        grid->addWidget(makeText(key.name, dialog), row, 0);
        grid->addWidget(what, row++, 1);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    grid->addWidget(buttons, row, 0, 1, 2);
    dialog->show();
}

} // namespace zrk
