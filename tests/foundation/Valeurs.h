#pragma once

#include "Textes.h"

#include <cstdlib>
#include <optional>

#include <support/Folder.h>

#include <libvue/platform/foundation/NSNumber.h>

namespace libvue {

inline void PrintTo(const NSPoint& p, std::ostream* out) { *out << NSStringFromPoint(p)->utf8(); }
inline void PrintTo(const NSSize& s, std::ostream* out) { *out << NSStringFromSize(s)->utf8(); }
inline void PrintTo(const NSRect& r, std::ostream* out) { *out << NSStringFromRect(r)->utf8(); }

namespace valeurs {

using test::Folder;
using textes::raised;
using textes::shown;
using textes::text;

inline constexpr auto nowhere = static_cast<NSUInteger>(NSNotFound);

inline Ref<NSNumber> number(NSInteger v) { return NSNumber::numberWithInteger(v); }
inline std::string described(const NSObject* o) { return o ? shown(o->description().get()) : "(null)"; }
template <class T> std::string described(const Ref<T>& o) { return described(o.get()); }

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
