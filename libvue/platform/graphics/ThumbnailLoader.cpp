#include <libvue/platform/graphics/ThumbnailLoader.h>

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

constexpr std::size_t largestFile = std::size_t{256} << 20;

struct Job {
    ThumbnailLoader::Ticket ticket;
    std::string path;
    int width, height;
};

CGFloat heldScale(CGFloat scale) { return scale > 0 && std::isfinite(scale) ? scale : 1; }

Job jobFor(ThumbnailLoader::Ticket ticket, const NSString* path, NSSize size, CGFloat scale) {
    const auto pixels = [scale](CGFloat points) {
        return std::isfinite(points) ? static_cast<int>(std::clamp(std::round(points * scale), 1.0, 32767.0)) : 1;
    };
    return {ticket, path ? path->utf8() : std::string(), pixels(size.width), pixels(size.height)};
}

/// Empty, with a reason, where it is no file that can be read.
std::vector<std::uint8_t> contents(const std::string& path, std::string& error) {
    std::vector<std::uint8_t> bytes;
    struct stat about {};
    // A pipe or a device would be read without end.
    if (stat(path.c_str(), &about) != 0 || !S_ISREG(about.st_mode)) {
        error = "no such file";
        return bytes;
    }
    const auto size = static_cast<std::size_t>(about.st_size);
    if (size == 0 || size > largestFile) {
        error = size == 0 ? "the file is empty" : "the file is too large";
        return bytes;
    }
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) {
        error = "the file cannot be opened";
        return bytes;
    }
    bytes.resize(size);
    bytes.resize(std::fread(bytes.data(), 1, size, file.get()));
    if (bytes.empty()) error = "the file cannot be read";
    return bytes;
}

/// Touches no object: it is the thread's, too.
std::shared_ptr<backend::Picture> pictureOf(const Job& job, backend::GraphicsEngine& engine, std::string& error) {
    const auto bytes = contents(job.path, error);
    return bytes.empty() ? nullptr : engine.decodeReduced(bytes, job.width, job.height, &error);
}

Ref<NSImage> imageOf(const std::shared_ptr<backend::Picture>& picture, CGFloat scale) {
    if (!picture) return nullptr;
    const NSSize pixels = picture->size();
    Ref<NSImage> image = make<NSImage>(NSSize{pixels.width / scale, pixels.height / scale});
    const Ref<NSBitmapImageRep> rep = make<NSBitmapImageRep>(picture);
    rep->setSize(image->size());
    image->addRepresentation(rep);
    return image;
}

} // namespace

/// Shared with the thread and with what it has given to the run loop; counted atomically, unlike objects.
struct ThumbnailLoader::State {
    struct Request {
        Done done;
        CGFloat scale;
    };
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Job> jobs; ///< the next one at the end
    bool busy = false, ends = false;
    std::thread thread;
    std::map<Ticket, Request> requests; ///< main thread alone

    /// The thread. It touches no object: pictures and strings are plain data.
    static void run(const std::shared_ptr<State>& s, backend::GraphicsEngine& engine, NSRunLoop& loop) {
        std::unique_lock lock(s->mutex);
        for (;;) {
            s->changed.wait(lock, [&] { return s->ends || !s->jobs.empty(); });
            if (s->ends) return;
            const Job job = std::move(s->jobs.back());
            s->jobs.pop_back();
            s->busy = true;
            lock.unlock();
            std::string error;
            auto picture = pictureOf(job, engine, error);
            loop.performBlock([s, ticket = job.ticket, picture = std::move(picture), error = std::move(error)] {
                deliver(*s, ticket, picture, error);
            });
            lock.lock();
            s->busy = false;
            s->changed.notify_all();
        }
    }

    static void deliver(State& s, Ticket ticket, const std::shared_ptr<backend::Picture>& picture,
                        const std::string& error) {
        const auto at = s.requests.find(ticket);
        if (at == s.requests.end()) return;
        const Request request = std::move(at->second);
        s.requests.erase(at);
        const Ref<NSImage> image = imageOf(picture, request.scale);
        request.done(image, image ? std::string() : error);
    }
};

void ThumbnailLoader::describe(ClassDescription<ThumbnailLoader>&) {}

ThumbnailLoader::ThumbnailLoader() : state_(std::make_shared<State>()) {}

ThumbnailLoader::~ThumbnailLoader() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->ends = true;
        state_->jobs.clear();
    }
    state_->changed.notify_all();
    if (state_->thread.joinable()) state_->thread.join();
    state_->requests.clear();
}

Ref<NSImage> ThumbnailLoader::read(const NSString* path, NSSize size, CGFloat scale, std::string* error) {
    scale = heldScale(scale);
    std::string reason;
    const auto picture = pictureOf(jobFor(0, path, size, scale), *backend::Backend::current().graphics, reason);
    if (error) *error = picture ? std::string() : reason;
    return imageOf(picture, scale);
}

ThumbnailLoader::Ticket ThumbnailLoader::load(const NSString* path, NSSize size, CGFloat scale, Done done) {
    scale = heldScale(scale);
    const Ticket ticket = ++last_;
    state_->requests.emplace(ticket, State::Request{std::move(done), scale});
    {
        const std::lock_guard lock(state_->mutex);
        state_->jobs.push_back(jobFor(ticket, path, size, scale));
    }
    if (!state_->thread.joinable())
        state_->thread = std::thread([state = state_, &engine = *backend::Backend::current().graphics,
                                      &loop = *NSRunLoop::mainRunLoop()] { State::run(state, engine, loop); });
    state_->changed.notify_all();
    return ticket;
}

void ThumbnailLoader::cancel(Ticket ticket) {
    if (state_->requests.erase(ticket) == 0) return;
    const std::lock_guard lock(state_->mutex);
    std::erase_if(state_->jobs, [ticket](const Job& job) { return job.ticket == ticket; });
}

std::size_t ThumbnailLoader::waiting() const noexcept { return state_->requests.size(); }

void ThumbnailLoader::wait() {
    std::unique_lock lock(state_->mutex);
    state_->changed.wait(lock, [this] { return state_->jobs.empty() && !state_->busy; });
}

} // namespace libvue
