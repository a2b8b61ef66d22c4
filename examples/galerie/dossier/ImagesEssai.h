#pragma once

#include <functional>
#include <string>

#include <libvue/platform/foundation/NSObject.h>

namespace galerie {

using namespace libvue;

/// Paints landscapes into a folder of temporary files, one a turn of the run loop, with two files among them that are
/// no pictures. They stay there for the next time.
class ImagesEssai : public NSObject {
public:
    static void describe(ClassDescription<ImagesEssai>&) {}
    static constexpr int kNombre = 180;

    [[nodiscard]] static std::string dossier();
    [[nodiscard]] static bool sontLa();
    void commence();
    void annule() noexcept {
        ++tour_;
        enCours_ = false;
    }
    [[nodiscard]] bool enCours() const noexcept { return enCours_; }
    [[nodiscard]] int faites() const noexcept { return faites_; }

    std::function<void()> surProgres;
    /// NO where a file could not be written.
    std::function<void(BOOL)> surFin;

private:
    void suite(unsigned tour);

    int faites_ = 0;
    unsigned tour_ = 0;
    bool enCours_ = false;
};

} // namespace galerie
