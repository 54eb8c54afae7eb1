#include "platform/Registry.h"

namespace zrk {
namespace {

class NoRegistry final : public Registry {
  public:
    [[nodiscard]] std::optional<RegistryValue> query(std::uint32_t /*rootKey*/, const QString& /*key*/,
                                                     const QString& /*value*/) const override {
        return {};
    }
};

} // namespace

std::unique_ptr<Registry> createRegistry() {
    return std::make_unique<NoRegistry>();
}

} // namespace zrk
