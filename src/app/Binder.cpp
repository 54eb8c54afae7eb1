#include "app/Binder.h"

#include "app/PlainToolTip.h"
#include "app/PortList.h"
#include "controls/Controls.h"
#include "files/PrintableText.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

namespace zrk {

void Binder::caption(QProperty<QString>& value, QAbstractButton* button) {
    follow(value, [&value, button] { button->setText(value); });
}

void Binder::caption(QProperty<QString>& value, QLabel* label) {
    follow(value, [&value, label] { label->setText(value); });
}

void Binder::caption(QProperty<QString>& value, QAction* action) {
    follow(value, [&value, action] { action->setText(value); });
}

void Binder::enabled(QProperty<bool>& value, QWidget* widget, WhileBusy whileBusy) {
    const auto show = [this, &value, widget, whileBusy] {
        widget->setEnabled(value && (whileBusy == WhileBusy::AsItIs || !m_busy));
    };
    follow(value, show);
    follow(m_busy, show);
}

void Binder::enabled(QProperty<bool>& value, QAction* action, WhileBusy whileBusy) {
    const auto show = [this, &value, action, whileBusy] {
        action->setEnabled(value && (whileBusy == WhileBusy::AsItIs || !m_busy));
    };
    follow(value, show);
    follow(m_busy, show);
}

void Binder::checkBox(CheckBox& value, QCheckBox* box) {
    caption(value.Caption, box);
    const auto show = [&value, box] {
        const QSignalBlocker notAnInput(box);
        box->setChecked(value.isTicked());
    };
    follow(value.Value, show);
    // A rule may undo the new value at once, so the box shows the result afterwards.
    QObject::connect(box, &QCheckBox::toggled, box, [&value, show](bool checked) {
        value.Value = checked ? 1 : 0;
        show();
    });
}

void Binder::textBox(TextBox& value, QLineEdit* edit) {
    const auto show = [&value, edit] {
        // A read-only field holds a name, which may come from anywhere.
        const QString text = edit->isReadOnly() ? printableText(value.Text) : value.Text.value();
        if (edit->text() == text)
            return; // it comes from the box itself, whose caret must stay
        const QSignalBlocker notAnInput(edit);
        edit->setText(text);
        edit->setCursorPosition(0);
    };
    follow(value.Text, show);
    QObject::connect(edit, &QLineEdit::textChanged, edit, [&value, edit, show](const QString& text) {
        if (edit->isReadOnly())
            show();
        else
            value.Text = text;
    });
}

void Binder::comboBox(ComboBox& value, PortList* list) {
    const auto select = [&value, list] {
        const QSignalBlocker notAnInput(list);
        list->setCurrentIndex(value.ListIndex);
    };
    follow(value.List, [&value, list, select] {
        const QSignalBlocker notAnInput(list);
        list->clear();
        for (const ListEntry& entry : value.List.value())
            list->addItem(entry.text, entry.itemData);
        select();
    });
    follow(value.ListIndex, select);
    enabled(value.Enabled, list, WhileBusy::AsItIs);
    QObject::connect(list, &PortList::currentIndexChanged, list, [&value, select](int index) {
        if (value.Enabled && index >= 0)
            value.ListIndex = index;
        else
            select();
    });
}

} // namespace zrk
