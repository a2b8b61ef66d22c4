#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <libvue/platform/backend/Forward.h>
#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue::backend {

/// A kind of sheet, upright.
struct Paper {
    std::string name;  ///< as printers know it, "iso_a4_210x297mm"
    std::string title; ///< for people, "A4"
    NSSize size;       ///< points

    bool operator==(const Paper&) const = default;
    /// Whether a sheet of that size, upright, is this one: papers are cut to half a millimetre.
    [[nodiscard]] bool isOfSize(NSSize upright) const noexcept {
        constexpr double cut = 1.5;
        return std::abs(size.width - upright.width) < cut && std::abs(size.height - upright.height) < cut;
    }
};

struct Printer {
    std::string name;  ///< of its queue
    std::string title; ///< for people
    bool isDefault = false;
    bool accepts = true; ///< takes jobs now
};

/// What a document is printed with, and where it goes: to a printer, or else to a file, or else it stays in memory.
struct PrintJob {
    std::string title;
    NSSize page;         ///< of a page as it is read: wider than high on its side
    std::string paper;   ///< the name of the sheet, for the printer; may be empty
    std::string printer; ///< the name of its queue
    std::string file;    ///< the path of a PDF
    int copies = 1;
};

struct PrintResult {
    bool done = false;
    std::string error;               ///< why not
    int number = 0;                  ///< the printer's, for a job
    std::vector<std::uint8_t> bytes; ///< of a document that stays in memory
};

/// A document on its way. Without a finish that was done, nothing stays of it anywhere: no file is begun at its path,
/// and one that was there is left as it was.
class LIBVUE_API PrintDocument {
public:
    virtual ~PrintDocument() = default;
    /// Starts the next page: the canvas of a page in points, y upward, good until the next page or finish.
    virtual Canvas& beginPage() = 0;
    /// Once, after the last page. A document without pages is not done.
    [[nodiscard]] virtual PrintResult finish() = 0;
};

/// Printers and documents.
class LIBVUE_API PrintService {
public:
    virtual ~PrintService() = default;
    /// Those that can be reached now; none where there is no print server. Asks anew each time.
    [[nodiscard]] virtual std::vector<Printer> printers() = 0;
    /// The sheets that the printer has; the usual ones for an empty or unknown name, or where it says none.
    [[nodiscard]] virtual std::vector<Paper> papers(std::string_view printer) = 0;
    /// Null, with the reason, where it cannot be begun: a folder that cannot be written to, no such printer.
    [[nodiscard]] virtual std::unique_ptr<PrintDocument> begin(const PrintJob& job, std::string* error) = 0;

    /// The sheets that every printer is taken to have.
    [[nodiscard]] static const std::vector<Paper>& usualPapers();
};

} // namespace libvue::backend
