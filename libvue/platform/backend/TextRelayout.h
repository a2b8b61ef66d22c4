#pragma once

#include <memory>

#include <libvue/platform/backend/TextEngine.h>

namespace libvue::backend {

/// A text engine that lays long texts out again after a change of theirs.
class LIBVUE_API TextRelayout {
public:
    virtual ~TextRelayout() = default;
    /// The same as TextEngine::layout, for less where `former` is what this answered for much the same text: paragraphs
    /// that stayed as they were are taken over. Null for the first time. Nothing of `former` is needed afterwards.
    [[nodiscard]] virtual std::shared_ptr<const TextLayout> layoutAgain(const TextInput& input,
                                                                        const TextLayout* former) = 0;
};

} // namespace libvue::backend
