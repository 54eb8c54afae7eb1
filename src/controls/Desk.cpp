#include "controls/Desk.h"

#include <QScopedValueRollback>

namespace zrk {

Answer Desk::show(const MessageBox& box) {
    const QScopedValueRollback asking(state.Asking, true);
    state.MessageText = box.prompt;
    return boxes.show(box);
}

void Desk::tell(const QString& prompt, MessageIcon icon, const QString& title) {
    (void)show({prompt, icon, MessageButtons::Ok, title});
}

} // namespace zrk
