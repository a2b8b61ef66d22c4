#include <libvue/platform/backend/qt/QtPrinting.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/qt/CupsServer.h>
#include <libvue/platform/backend/qt/PdfCanvas.h>
#include <libvue/platform/backend/qt/QtApplication.h>
#include <libvue/platform/foundation/Files.h>

namespace libvue::backend {

namespace {

std::string reasonOf(int code) { return std::generic_category().message(code); }

mode_t usualMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/// A document that is written page by page into a file that nobody knows yet.
class PdfDocument final : public PrintDocument {
public:
    explicit PdfDocument(const PrintJob& job) : job_(job) {}
    PdfDocument(const PdfDocument&) = delete;
    PdfDocument& operator=(const PdfDocument&) = delete;
    ~PdfDocument() override {
        canvas_.reset();
        file_.close();
        if (!neighbour_.empty()) ::unlink(neighbour_.c_str());
    }

    bool open(std::string* error) {
        if (!isInMemory()) {
            const int descriptor = makeFile();
            // The descriptor is the file's own from here on.
            if (descriptor < 0 || !file_.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle)) {
                if (error) *error = reasonOf(errno);
                return false;
            }
        }
        canvas_ = pdf::open(job_.page, job_.title, isInMemory() ? nullptr : &file_);
        return true;
    }

    Canvas& beginPage() override {
        if (pages_++ > 0) canvas_->beginPage();
        return *canvas_;
    }

    PrintResult finish() override {
        PrintResult result;
        if (pages_ == 0) return result;
        std::vector<std::uint8_t> bytes = canvas_->finish();
        if (isInMemory()) {
            result.bytes = std::move(bytes);
            result.done = true;
            return result;
        }
        canvas_.reset();
        // A full disk is told by the flush, or by the system as late as here.
        if (!file_.flush() || file_.error() != QFileDevice::NoError || ::fsync(file_.handle()) != 0) {
            result.error = file_.error() != QFileDevice::NoError ? file_.errorString().toStdString() : reasonOf(errno);
            return result;
        }
        file_.close();
        if (!job_.printer.empty()) return cups::submit(job_, neighbour_);
        if (std::rename(neighbour_.c_str(), target_.c_str()) != 0) {
            result.error = reasonOf(errno);
            return result;
        }
        neighbour_.clear();
        result.done = true;
        return result;
    }

private:
    [[nodiscard]] bool isInMemory() const { return job_.printer.empty() && job_.file.empty(); }

    /// A file beside the one that is to be replaced, or a temporary one for a printer. -1 with errno.
    int makeFile() {
        mode_t mode = usualMode();
        std::string name;
        if (job_.printer.empty()) {
            target_ = libvue::detail::fileMeantBy(job_.file);
            struct stat old {};
            if (::stat(target_.c_str(), &old) == 0) {
                if (!S_ISREG(old.st_mode)) {
                    errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
                    return -1;
                }
                mode = old.st_mode & 07777;
            }
            name = target_ + ".XXXXXX";
        } else {
            constexpr mode_t ownersAlone = 0600;
            mode = ownersAlone;
            name = (std::filesystem::temp_directory_path() / "impression-XXXXXX").string();
        }
        const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
        if (descriptor < 0) return -1;
        neighbour_ = name;
        if (::fchmod(descriptor, mode) == 0) return descriptor;
        const int code = errno;
        ::close(descriptor);
        errno = code;
        return -1;
    }

    PrintJob job_;
    std::string target_;
    std::string neighbour_; ///< what is to be removed; empty once it has its name
    QFile file_;
    std::unique_ptr<PdfCanvas> canvas_;
    int pages_ = 0;
};

} // namespace

std::vector<Printer> QtPrinting::printers() { return cups::printers(); }

std::vector<Paper> QtPrinting::papers(std::string_view printer) {
    std::vector<Paper> own;
    if (!printer.empty()) own = cups::papers(printer);
    return own.empty() ? usualPapers() : own;
}

std::unique_ptr<PrintDocument> QtPrinting::begin(const PrintJob& job, std::string* error) {
    auto document = std::make_unique<PdfDocument>(job);
    if (!document->open(error)) return nullptr;
    return document;
}

std::unique_ptr<PrintService> makeQtPrinting() {
    ensureQtApplication(QtDisplay::none);
    return std::make_unique<QtPrinting>();
}

} // namespace libvue::backend
