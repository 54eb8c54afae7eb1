#pragma once

#include <QProperty>
#include <QPropertyChangeHandler>
#include <QString>

#include <functional>
#include <vector>

class QAbstractButton;
class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QTreeWidget;
class QWidget;

namespace zrk {

class AddressList;
class PortList;
struct CheckBox;
struct ComboBox;
struct TextBox;

/// A set of bindings of widgets to control values: a widget shows its value from the start and after every
/// change, and an input by keyboard, mouse or assistive tool goes into the value; a widget that takes no
/// input returns to its value. A widget's signal of a change always means an input: it is silent while the
/// value is being shown. The values and the widgets must outlive the binder; a widget's own signals stop with
/// the widget.
class Binder {
  public:
    /// `busy` is true while controls bound with WhileBusy::Grey take no input, whatever their own value.
    explicit Binder(QProperty<bool>& busy) : m_busy(busy) {}

    void caption(QProperty<QString>& value, QAbstractButton* button);
    void caption(QProperty<QString>& value, QLabel* label);
    void caption(QProperty<QString>& value, QAction* action);

    enum class WhileBusy { AsItIs, Grey };
    void enabled(QProperty<bool>& value, QWidget* widget, WhileBusy whileBusy);
    void enabled(QProperty<bool>& value, QAction* action, WhileBusy whileBusy);

    void checkBox(CheckBox& value, QCheckBox* box);
    void textBox(TextBox& value, QLineEdit* edit);
    void comboBox(ComboBox& value, PortList* list);

    /// Runs `show` now and after every change of `value`.
    template <typename T>
    void follow(QProperty<T>& value, const std::function<void()>& show) {
        show();
        m_handlers.push_back(value.onValueChanged(show));
    }

  private:
    QProperty<bool>& m_busy;
    std::vector<QPropertyChangeHandler<std::function<void()>>> m_handlers;
};

} // namespace zrk
