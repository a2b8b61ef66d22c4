#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/RecordingCanvas.h>

namespace libvue::test {

/// Stands before the graphics engine of the backend from the moment that it is made: what is drawn is drawn as ever,
/// and kept as data, canvas by canvas.
class DessinsSuivis final : public backend::GraphicsEngine {
public:
    using Operation = backend::RecordingCanvas::Operation;
    struct Dessin {
        Operation operation;
        std::string image; ///< a line an operation: what the picture showed then, if it was drawn here
    };

    /// Until the backend goes, which owns it.
    static DessinsSuivis& installe() {
        auto& ici = backend::Backend::current().graphics;
        auto suivis = std::make_unique<DessinsSuivis>(std::move(ici));
        DessinsSuivis& rendu = *suivis;
        ici = std::move(suivis);
        return rendu;
    }
    explicit DessinsSuivis(std::unique_ptr<GraphicsEngine> vrai) : vrai_(std::move(vrai)) {}

    /// What each display pass drew on its window.
    std::vector<std::vector<Dessin>> passes;

    std::shared_ptr<backend::Picture> makePicture(NSSize size, double scale) override {
        return vrai_->makePicture(size, scale);
    }
    std::unique_ptr<backend::Canvas> canvasOn(const std::shared_ptr<backend::Picture>& picture) override {
        return std::make_unique<Toile>(*this, *picture, vrai_->canvasOn(picture));
    }
    PDF makePDF(NSSize page, std::string_view title) override { return vrai_->makePDF(page, title); }
    void beginPage(PDF& pdf) override { vrai_->beginPage(pdf); }
    std::vector<std::uint8_t> finish(PDF& pdf) override { return vrai_->finish(pdf); }
    std::shared_ptr<backend::Picture> decode(std::span<const std::uint8_t> bytes, std::string* error) override {
        return vrai_->decode(bytes, error);
    }
    std::shared_ptr<backend::Picture> decodeReduced(std::span<const std::uint8_t> bytes, int width, int height,
                                                    std::string* error) override {
        return vrai_->decodeReduced(bytes, width, height, error);
    }
    std::vector<std::uint8_t> encode(const backend::Picture& picture, std::string_view format) override {
        return vrai_->encode(picture, format);
    }
    std::shared_ptr<backend::Picture> copy(const backend::Picture& picture) override { return vrai_->copy(picture); }
    void clear(backend::Picture& picture, const NSRect& rect) override { vrai_->clear(picture, rect); }
    std::shared_ptr<backend::Picture> makePicture(std::span<const std::uint32_t> pixels, int width, int height,
                                                  NSSize size) override {
        return vrai_->makePicture(pixels, width, height, size);
    }

private:
    class Toile final : public backend::RecordingCanvas {
    public:
        Toile(DessinsSuivis& a, const backend::Picture& sur, std::unique_ptr<Canvas> vraie)
            : RecordingCanvas(sur.size(), vraie->scale(), vraie.get()), a_(&a), sur_(&sur), vraie_(std::move(vraie)) {
            setDrawsToScreen(vraie_->drawsToScreen());
        }
        ~Toile() override {
            if (!drawsToScreen()) {
                a_->images_[sur_] = describe();
                return;
            }
            auto& passe = a_->passes.emplace_back();
            for (const Operation& o : operations())
                passe.push_back({o, o.picture ? a_->images_[o.picture] : std::string()});
        }

    private:
        DessinsSuivis* a_;
        const backend::Picture* sur_;
        std::unique_ptr<Canvas> vraie_;
    };
    std::unique_ptr<GraphicsEngine> vrai_;
    std::map<const backend::Picture*, std::string> images_;
};

} // namespace libvue::test
