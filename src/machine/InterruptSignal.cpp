#include "machine/InterruptSignal.h"

#include "platform/EventLoop.h"

#include <utility>

namespace zrk {

InterruptSignal::InterruptSignal(EventLoop& loop, std::function<void(bool)> interrupted)
    : InterruptSignal([&loop, interrupted = std::move(interrupted)](Request request) {
          loop.post([request = std::move(request), interrupted]() mutable {
              const bool isEnd = request->isEnd;
              request.reset(); // taken, however long a question to the user takes
              interrupted(isEnd);
          });
      }) {}

} // namespace zrk
