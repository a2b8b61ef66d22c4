#include <dossier/LectureDossier.h>

#include <algorithm>
#include <array>
#include <string_view>

#include <libvue/platform/foundation/NSRunLoop.h>

namespace galerie {

namespace {

/// Short enough for the frames between two slices.
constexpr NSTimeInterval kTranche = 0.004;
constexpr std::size_t kEntrees = 400;

bool estImage(const std::filesystem::path& chemin) {
    static constexpr std::array<std::string_view, 11> suffixes = {".png",  ".jpg",  ".jpeg", ".gif", ".bmp", ".tif",
                                                                  ".tiff", ".webp", ".ppm",  ".xpm", ".svg"};
    std::string suffixe = chemin.extension().string();
    std::transform(suffixe.begin(), suffixe.end(), suffixe.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); });
    return std::find(suffixes.begin(), suffixes.end(), suffixe) != suffixes.end();
}

} // namespace

void LectureDossier::commence(const std::string& chemin) {
    images_.clear();
    vus_ = 0;
    std::error_code erreur;
    auto cours = std::make_shared<Cours>();
    cours->ou = std::filesystem::directory_iterator(chemin, erreur);
    if (erreur) {
        cours_ = nullptr;
        if (surFin) surFin(Fin::impossible);
        return;
    }
    cours_ = std::move(cours);
    NSRunLoop::mainRunLoop()->performBlock([moi = Ref<LectureDossier>(this), c = cours_] {
        if (moi->cours_ == c) moi->tranche();
    });
}

void LectureDossier::tranche() {
    NSRunLoop* boucle = NSRunLoop::mainRunLoop();
    const NSTimeInterval jusque = boucle->now() + kTranche;
    std::error_code erreur;
    const std::filesystem::directory_iterator bout;
    for (std::size_t i = 0; i < kEntrees && cours_->ou != bout && boucle->now() <= jusque; ++i) {
        const auto& entree = *cours_->ou;
        ++vus_;
        if (estImage(entree.path()) && entree.is_regular_file(erreur)) images_.push_back(entree.path().string());
        // What is listed no longer, or not to be read, ends the list.
        cours_->ou.increment(erreur);
        if (erreur) break;
    }
    if (erreur || cours_->ou == bout) {
        finis(Fin::complete);
        return;
    }
    boucle->performBlock([moi = Ref<LectureDossier>(this), c = cours_] {
        if (moi->cours_ == c) moi->tranche();
    });
    if (surProgres) surProgres();
}

void LectureDossier::annule() {
    if (cours_) finis(Fin::annulee);
}

void LectureDossier::finis(Fin fin) {
    const Ref<LectureDossier> moi(this);
    cours_ = nullptr;
    std::sort(images_.begin(), images_.end());
    if (surFin) surFin(fin);
}

} // namespace galerie
