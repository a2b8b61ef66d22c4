#pragma once

#include <cstddef>
#include <memory>

#include <libvue/platform/backend/TextEngine.h>

namespace libvue {

/// The layouts of the texts that were measured or drawn last, found by the value of their whole input.
///
/// For the platform's own sources: it shows backend types.
class LIBVUE_API TextLayoutCache {
public:
    /// The process-wide one.
    [[nodiscard]] static TextLayoutCache& shared();
    TextLayoutCache();
    ~TextLayoutCache();

    /// Laid out by the current backend unless it is there already. Texts over the largest length are not kept.
    [[nodiscard]] std::shared_ptr<const backend::TextLayout> layout(const backend::TextInput& input);
    /// Forgets everything: fonts or the backend changed.
    void clear();
    [[nodiscard]] std::size_t count() const noexcept;
    /// How many were found since the start.
    [[nodiscard]] std::size_t hits() const noexcept;

    static constexpr std::size_t capacity = 1024;
    static constexpr std::size_t longestText = 4096; ///< UTF-16 units

private:
    struct Table;
    std::unique_ptr<Table> table_;
};

} // namespace libvue
