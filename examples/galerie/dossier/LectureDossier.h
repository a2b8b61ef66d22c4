#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <libvue/platform/foundation/NSObject.h>

namespace galerie {

using namespace libvue;

/// Finds the picture files of a folder (not of those in it), a slice a turn of the run loop.
class LectureDossier : public NSObject {
public:
    static void describe(ClassDescription<LectureDossier>&) {}
    enum class Fin { complete, annulee, impossible };

    /// Ends one that is under way, in silence. What the folder holds is told by surProgres and surFin.
    void commence(const std::string& chemin);
    /// Ends it with what was found until then.
    void annule();
    [[nodiscard]] bool enCours() const noexcept { return cours_ != nullptr; }
    /// Entries that were looked at, and the pictures among them; sorted by name at the end.
    [[nodiscard]] std::size_t vus() const noexcept { return vus_; }
    [[nodiscard]] const std::vector<std::string>& images() const noexcept { return images_; }

    std::function<void()> surProgres;
    std::function<void(Fin)> surFin;

private:
    struct Cours {
        std::filesystem::directory_iterator ou;
    };
    void tranche();
    void finis(Fin fin);

    std::shared_ptr<Cours> cours_;
    std::vector<std::string> images_;
    std::size_t vus_ = 0;
};

} // namespace galerie
