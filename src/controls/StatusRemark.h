#pragma once

#include <QString>

namespace zrk {

/// How much a text in the first status panel matters.
enum class RemarkSeverity {
    Note,
    Done,    ///< what the user asked for has been achieved
    Warning, ///< achieved, or stopped by the user, but something needs a look
    Failed,
};

/// The remark in the first status panel while nothing runs; kept until the user's next action.
struct StatusRemark {
    QString text; ///< "": nothing to say
    RemarkSeverity severity = RemarkSeverity::Note;
};

} // namespace zrk
