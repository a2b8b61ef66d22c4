#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/qt/QtApplication.h>
#include <libvue/platform/backend/qt/RasterTextLayout.h>
#include <libvue/platform/backend/qt/TextFonts.h>

#include <QFontMetricsF>
#include <QString>

namespace libvue::backend {

namespace {

class RasterText final : public TextEngine {
public:
    RasterText() { ensureQtApplication(); }

    std::shared_ptr<const FontFace> font(std::string_view name, double pointSize, std::uint32_t traits) override {
        return fonts::find(name, pointSize, traits);
    }
    bool hasFamily(std::string_view name) override { return fonts::isKnown(name); }
    std::vector<std::string> families() override { return fonts::families(); }
    std::string systemFontFamily() override { return fonts::systemFamily(); }
    std::shared_ptr<const TextLayout> layout(const TextInput& input) override {
        return std::make_shared<RasterTextLayout>(input);
    }
    double advance(std::u16string_view text, const FontFace& font) override {
        if (text.empty()) return 0;
        const auto string =
            QString::fromRawData(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
        return QFontMetricsF(rasterFace(&font).font()).horizontalAdvance(string);
    }
};

} // namespace

std::unique_ptr<TextEngine> makeRasterText() { return std::make_unique<RasterText>(); }

} // namespace libvue::backend
