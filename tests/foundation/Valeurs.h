#pragma once

#include "Textes.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include <libvue/platform/foundation/NSNumber.h>

namespace libvue {

inline void PrintTo(const NSPoint& p, std::ostream* out) { *out << NSStringFromPoint(p)->utf8(); }
inline void PrintTo(const NSSize& s, std::ostream* out) { *out << NSStringFromSize(s)->utf8(); }
inline void PrintTo(const NSRect& r, std::ostream* out) { *out << NSStringFromRect(r)->utf8(); }

namespace valeurs {

using textes::raised;
using textes::shown;
using textes::text;

inline constexpr auto nowhere = static_cast<NSUInteger>(NSNotFound);

inline Ref<NSNumber> number(NSInteger v) { return NSNumber::numberWithInteger(v); }
inline std::string described(const NSObject* o) { return o ? shown(o->description().get()) : "(null)"; }
template <class T> std::string described(const Ref<T>& o) { return described(o.get()); }

/// A folder of its own, gone at the end.
class Folder {
public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vue-XXXXXX").string();
        path = ::mkdtemp(pattern.data());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    Ref<NSString> at(const std::string& name) const { return NSString::fromUTF8((path / name).string()); }
    void write(const std::string& name, std::string_view bytes) const {
        std::filesystem::create_directories((path / name).parent_path());
        std::ofstream(path / name, std::ios::binary) << bytes;
    }
    std::string read(const std::string& name) const {
        std::ifstream in(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& e : std::filesystem::directory_iterator(path))
            all.push_back(e.path().filename().string());
        return all;
    }
    std::filesystem::path path;
};

/// Sets a variable of the environment, or takes it off, until the end.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* v = std::getenv(name)) old_ = v;
        set(value);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) { value ? ::setenv(name_, value, 1) : ::unsetenv(name_); }
    const char* name_;
    std::optional<std::string> old_;
};

/// Gathers what is logged.
class Log {
public:
    Log() {
        installLogSink([](const NSString* line, void* self) { static_cast<Log*>(self)->lines.push_back(line->utf8()); },
                       this);
    }
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    ~Log() { installLogSink(nullptr, nullptr); }
    std::vector<std::string> lines;
};

/// The same numbers on every machine.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        return state_ ^= state_ << 17;
    }
    std::uint64_t below(std::uint64_t n) { return next() % n; }

private:
    std::uint64_t state_;
};

} // namespace valeurs
} // namespace libvue
