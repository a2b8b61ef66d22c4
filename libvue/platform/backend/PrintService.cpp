#include <libvue/platform/backend/PrintService.h>

namespace libvue::backend {

const std::vector<Paper>& PrintService::usualPapers() {
    constexpr double mm = 72 / 25.4;
    static const std::vector<Paper> papers{
        {"na_letter_8.5x11in", "Lettre US", {612, 792}},
        {"na_legal_8.5x14in", "Légal US", {612, 1008}},
        {"na_ledger_11x17in", "Tabloïd", {792, 1224}},
        {"iso_a3_297x420mm", "A3", {297 * mm, 420 * mm}},
        {"iso_a4_210x297mm", "A4", {210 * mm, 297 * mm}},
        {"iso_a5_148x210mm", "A5", {148 * mm, 210 * mm}},
        {"iso_dl_110x220mm", "Enveloppe DL", {110 * mm, 220 * mm}},
    };
    return papers;
}

} // namespace libvue::backend
