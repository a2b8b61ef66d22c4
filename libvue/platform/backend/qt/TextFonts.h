#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QFont>
#include <QRawFont>

#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/backend/qt/PlainGlyphs.h>

namespace libvue::backend {

/// A font of ours, as the shaper wants it. Its vertical measures come straight from the font's tables, without
/// rounding.
class RasterFontFace final : public FontFace {
public:
    RasterFontFace(std::string requested, const QFont& font, double pointSize);

    [[nodiscard]] std::string familyName() const override { return family_; }
    [[nodiscard]] std::string requestedName() const override { return requested_; }
    [[nodiscard]] double pointSize() const override { return pointSize_; }
    [[nodiscard]] std::uint32_t traits() const override { return traits_; }
    [[nodiscard]] int weight() const override { return weight_; }
    [[nodiscard]] double ascender() const override { return ascender_; }
    [[nodiscard]] double descender() const override { return descender_; }
    [[nodiscard]] double leading() const override { return leading_; }
    [[nodiscard]] double xHeight() const override { return xHeight_; }
    [[nodiscard]] double capHeight() const override { return capHeight_; }
    [[nodiscard]] double underlinePosition() const override { return underlinePosition_; }
    [[nodiscard]] double underlineThickness() const override { return underlineThickness_; }
    [[nodiscard]] double maximumAdvance() const override { return maximumAdvance_; }
    [[nodiscard]] bool covers(char32_t character) const override;

    [[nodiscard]] const QFont& font() const noexcept { return font_; }
    [[nodiscard]] const QRawFont& raw() const noexcept { return raw_; }
    /// The advance of "…".
    [[nodiscard]] double ellipsisAdvance() const;
    /// What is known of plain words in this font; null for fonts that may look farther than from one character to the
    /// next.
    [[nodiscard]] PlainGlyphs* plainGlyphs() const;

private:
    std::string requested_, family_;
    QFont font_;
    QRawFont raw_;
    double pointSize_;
    std::uint32_t traits_ = 0;
    int weight_ = 5;
    double ascender_ = 0, descender_ = 0, leading_ = 0, xHeight_ = 0, capHeight_ = 0;
    double underlinePosition_ = 0, underlineThickness_ = 0, maximumAdvance_ = 0;
    mutable double ellipsis_ = -1;
    bool looksNoFarther_ = false;
    mutable std::unique_ptr<PlainGlyphs> plain_;
};

/// The face behind the interface, or the system's at 12 points where there is none.
[[nodiscard]] const RasterFontFace& rasterFace(const FontFace* face);

namespace fonts {

/// A face that is kept for the next time. Sizes that are not positive give 12.
[[nodiscard]] std::shared_ptr<const RasterFontFace> find(std::string_view name, double pointSize, std::uint32_t traits);
[[nodiscard]] bool isKnown(std::string_view name);
[[nodiscard]] std::vector<std::string> families();
[[nodiscard]] std::string systemFamily();
/// Glyphless fonts for the room of attachments: every character is one box of a known width, whatever the machine has.
[[nodiscard]] QFont placeholder(double pointSize);

} // namespace fonts

} // namespace libvue::backend
