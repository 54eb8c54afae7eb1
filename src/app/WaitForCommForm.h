#pragma once

#include "boot/WaitDialogView.h"

#include <QDialog>
#include <QPointer>
#include <QProperty>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace zrk {

/// `frmWaitForComm`, the wait dialog's window. One window serves every wait; between waits it is hidden and
/// has no dialog.
class WaitForCommForm final : public QDialog {
    Q_OBJECT

  public:
    explicit WaitForCommForm(QWidget* parent);

    /// Shows the window for `dialog`, modal to its parent, and returns at once.
    void openFor(WaitDialog& dialog);

    /// Hides the window and forgets the dialog.
    void leave();

    /// Counts as a cancel: Escape, the close box and anything else that closes the window. The waiting loop
    /// then ends and hides the window.
    void reject() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void keyDown(const QKeyEvent& event);
    void showSeen(const QString& text);

    WaitDialog* m_dialog = nullptr;
    QLabel* m_lblMsg;
    QLabel* m_lblSeen;
    QPropertyNotifier m_seen; ///< follows the dialog's lblSeen while the window is open
    QPushButton* m_cancelButton;
    QPushButton* m_cmdOut;
    QLineEdit* m_txtOut;
};

/// Shows the wait dialog on top of the main window.
class WindowWaitDialog final : public WaitDialogView {
  public:
    explicit WindowWaitDialog(std::function<QWidget*()> parent) : m_parent(std::move(parent)) {}

    void show(WaitDialog& dialog) override;
    void hide() override;

    /// Returns the dialog's window while it is open, else null.
    [[nodiscard]] QWidget* openWindow() const;

  private:
    std::function<QWidget*()> m_parent;
    QPointer<WaitForCommForm> m_window; ///< belongs to its parent
};

} // namespace zrk
