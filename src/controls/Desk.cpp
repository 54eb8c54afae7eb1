#include "controls/Desk.h"

namespace zrk {

Answer Desk::show(const MessageBox& box) {
    state.MessageText = box.prompt;
    return boxes.show(box);
}

void Desk::tell(const QString& prompt, MessageIcon icon, const QString& title) {
    (void)show({prompt, icon, MessageButtons::Ok, title});
}

} // namespace zrk
