#include <libvue/platform/backend/qt/CupsServer.h>

#if LIBVUE_HAVE_CUPS

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>

#include <cups/cups.h>
#include <dlfcn.h>
#include <fcntl.h>

#include <libvue/platform/foundation/Files.h>

namespace libvue::backend::cups {

namespace {

/// The library of the print server, loaded when somebody prints: it brings a good dozen others along, which would
/// lengthen every start.
struct Library {
    decltype(&::httpClose) httpClose;
    decltype(&::httpConnect2) httpConnect2;
    decltype(&::httpSetTimeout) httpSetTimeout;
    decltype(&::cupsServer) cupsServer;
    decltype(&::ippPort) ippPort;
    decltype(&::cupsEncryption) cupsEncryption;
    decltype(&::cupsSetServer) cupsSetServer;
    decltype(&::cupsGetDests2) cupsGetDests2;
    decltype(&::cupsFreeDests) cupsFreeDests;
    decltype(&::cupsGetDest) cupsGetDest;
    decltype(&::cupsAddOption) cupsAddOption;
    decltype(&::cupsFreeOptions) cupsFreeOptions;
    decltype(&::cupsGetOption) cupsGetOption;
    decltype(&::cupsLastErrorString) cupsLastErrorString;
    decltype(&::cupsWriteRequestData) cupsWriteRequestData;
    decltype(&::cupsCopyDestInfo) cupsCopyDestInfo;
    decltype(&::cupsFreeDestInfo) cupsFreeDestInfo;
    decltype(&::cupsGetDestMediaCount) cupsGetDestMediaCount;
    decltype(&::cupsGetDestMediaByIndex) cupsGetDestMediaByIndex;
    decltype(&::cupsLocalizeDestMedia) cupsLocalizeDestMedia;
    decltype(&::cupsCreateJob) cupsCreateJob;
    decltype(&::cupsStartDocument) cupsStartDocument;
    decltype(&::cupsFinishDocument) cupsFinishDocument;
    decltype(&::cupsCancelJob2) cupsCancelJob2;

    /// Null where it is not installed.
    static const Library* get() {
        static const Library library;
        return library.complete_ ? &library : nullptr;
    }

private:
    Library() {
        handle_ = ::dlopen("libcups.so.2", RTLD_NOW | RTLD_LOCAL);
        complete_ = handle_ != nullptr;
        load(httpClose, "httpClose");
        load(httpConnect2, "httpConnect2");
        load(httpSetTimeout, "httpSetTimeout");
        load(cupsServer, "cupsServer");
        load(ippPort, "ippPort");
        load(cupsEncryption, "cupsEncryption");
        load(cupsSetServer, "cupsSetServer");
        load(cupsGetDests2, "cupsGetDests2");
        load(cupsFreeDests, "cupsFreeDests");
        load(cupsGetDest, "cupsGetDest");
        load(cupsAddOption, "cupsAddOption");
        load(cupsFreeOptions, "cupsFreeOptions");
        load(cupsGetOption, "cupsGetOption");
        load(cupsLastErrorString, "cupsLastErrorString");
        load(cupsWriteRequestData, "cupsWriteRequestData");
        load(cupsCopyDestInfo, "cupsCopyDestInfo");
        load(cupsFreeDestInfo, "cupsFreeDestInfo");
        load(cupsGetDestMediaCount, "cupsGetDestMediaCount");
        load(cupsGetDestMediaByIndex, "cupsGetDestMediaByIndex");
        load(cupsLocalizeDestMedia, "cupsLocalizeDestMedia");
        load(cupsCreateJob, "cupsCreateJob");
        load(cupsStartDocument, "cupsStartDocument");
        load(cupsFinishDocument, "cupsFinishDocument");
        load(cupsCancelJob2, "cupsCancelJob2");
    }
    template <class F> void load(F*& function, const char* name) {
        function = handle_ ? reinterpret_cast<F*>(::dlsym(handle_, name)) : nullptr;
        complete_ = complete_ && function;
    }

    void* handle_;
    bool complete_;
};

/// After connect has answered.
const Library& lib() { return *Library::get(); }

struct CloseConnection {
    void operator()(http_t* http) const { lib().httpClose(http); }
};
using Connection = std::unique_ptr<http_t, CloseConnection>;

Connection connect() {
    if (!Library::get()) return nullptr;
    lib().cupsSetServer(nullptr); // asks the settings anew
    constexpr int milliseconds = 2000;
    Connection http(lib().httpConnect2(lib().cupsServer(), lib().ippPort(), nullptr, AF_UNSPEC, lib().cupsEncryption(),
                                       1, milliseconds, nullptr));
    // A server that answers nothing more is given up.
    constexpr double seconds = 10;
    if (http)
        lib().httpSetTimeout(
            http.get(), seconds, [](http_t*, void*) { return 0; }, nullptr);
    return http;
}

/// The queues of the server.
class Queues {
public:
    explicit Queues(http_t* http) : count_(lib().cupsGetDests2(http, &list_)) {}
    ~Queues() { lib().cupsFreeDests(count_, list_); }
    Queues(const Queues&) = delete;
    Queues& operator=(const Queues&) = delete;

    [[nodiscard]] const cups_dest_t* begin() const { return list_; }
    [[nodiscard]] const cups_dest_t* end() const { return list_ + count_; }
    [[nodiscard]] cups_dest_t* find(const std::string& name) const {
        return lib().cupsGetDest(name.c_str(), nullptr, count_, list_);
    }

private:
    cups_dest_t* list_ = nullptr;
    int count_;
};

/// The options of a job.
class Options {
public:
    ~Options() { lib().cupsFreeOptions(count_, list_); }
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    void add(const char* name, const std::string& value) {
        count_ = lib().cupsAddOption(name, value.c_str(), count_, &list_);
    }
    [[nodiscard]] int count() const { return count_; }
    [[nodiscard]] cups_option_t* list() const { return list_; }

private:
    cups_option_t* list_ = nullptr;
    int count_ = 0;
};

const char* option(const cups_dest_t& dest, const char* name) {
    const char* value = lib().cupsGetOption(name, dest.num_options, dest.options);
    return value ? value : "";
}

/// The title of a usual paper; empty for others.
std::string titleOf(std::string_view paper) {
    for (const Paper& p : PrintService::usualPapers())
        if (p.name == paper) return p.title;
    return {};
}

PrintResult failure(std::string reason) {
    PrintResult result;
    result.error = std::move(reason);
    return result;
}

PrintResult failure() {
    const char* reason = lib().cupsLastErrorString();
    return failure(reason && *reason ? reason : "the print server does not answer");
}

bool sendFile(http_t* http, const std::string& path) {
    const libvue::detail::OpenFile file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen()) return false;
    std::array<char, 65536> block;
    for (;;) {
        const ssize_t n = ::read(file.descriptor(), block.data(), block.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        if (n == 0) return true;
        if (lib().cupsWriteRequestData(http, block.data(), static_cast<std::size_t>(n)) != HTTP_STATUS_CONTINUE)
            return false;
    }
}

} // namespace

std::vector<Printer> printers() {
    std::vector<Printer> found;
    const Connection http = connect();
    if (!http) return found;
    const Queues queues(http.get());
    for (const cups_dest_t& dest : queues) {
        // Saved sets of options of a queue are no printers of their own.
        if (dest.instance) continue;
        Printer p;
        p.name = dest.name;
        p.title = option(dest, "printer-info");
        if (p.title.empty()) p.title = p.name;
        p.isDefault = dest.is_default != 0;
        p.accepts = std::string_view(option(dest, "printer-is-accepting-jobs")) != "false";
        found.push_back(std::move(p));
    }
    return found;
}

std::vector<Paper> papers(std::string_view printer) {
    std::vector<Paper> found;
    const Connection http = connect();
    if (!http) return found;
    const Queues queues(http.get());
    cups_dest_t* dest = queues.find(std::string(printer));
    if (!dest) return found;
    const std::unique_ptr<cups_dinfo_t, decltype(lib().cupsFreeDestInfo)> info(lib().cupsCopyDestInfo(http.get(), dest),
                                                                               lib().cupsFreeDestInfo);
    if (!info) return found;
    const int count = lib().cupsGetDestMediaCount(http.get(), dest, info.get(), CUPS_MEDIA_FLAGS_DEFAULT);
    for (int i = 0; i < count; ++i) {
        cups_size_t size{};
        if (!lib().cupsGetDestMediaByIndex(http.get(), dest, info.get(), i, CUPS_MEDIA_FLAGS_DEFAULT, &size)) continue;
        constexpr double point = 2540.0 / 72; // in hundredths of a millimetre
        Paper p{size.media, titleOf(size.media), {size.width / point, size.length / point}};
        if (p.title.empty()) {
            const char* title =
                lib().cupsLocalizeDestMedia(http.get(), dest, info.get(), CUPS_MEDIA_FLAGS_DEFAULT, &size);
            p.title = title ? title : p.name;
        }
        const bool known = std::ranges::any_of(found, [&](const Paper& q) { return q.name == p.name; });
        if (!known && p.size.width >= 1 && p.size.height >= 1) found.push_back(std::move(p));
    }
    return found;
}

PrintResult submit(const PrintJob& job, const std::string& path) {
    const Connection http = connect();
    if (!http) return failure("the print server does not answer");
    Options options;
    options.add("copies", std::to_string(job.copies));
    if (!job.paper.empty()) options.add("media", job.paper);
    const char* queue = job.printer.c_str();
    const int number = lib().cupsCreateJob(http.get(), queue, job.title.c_str(), options.count(), options.list());
    if (number == 0) return failure();
    const bool sent = lib().cupsStartDocument(http.get(), queue, number, job.title.c_str(), CUPS_FORMAT_PDF, 1) ==
                          HTTP_STATUS_CONTINUE &&
                      sendFile(http.get(), path) &&
                      lib().cupsFinishDocument(http.get(), queue) <= IPP_STATUS_OK_EVENTS_COMPLETE;
    if (!sent) {
        PrintResult result = failure();
        lib().cupsCancelJob2(http.get(), queue, number, 0);
        return result;
    }
    PrintResult result;
    result.number = number;
    result.done = true;
    return result;
}

} // namespace libvue::backend::cups

#else

namespace libvue::backend::cups {

std::vector<Printer> printers() { return {}; }
std::vector<Paper> papers(std::string_view) { return {}; }
PrintResult submit(const PrintJob&, const std::string&) {
    PrintResult result;
    result.error = "this library was built without CUPS";
    return result;
}

} // namespace libvue::backend::cups

#endif
