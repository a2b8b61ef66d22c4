#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace libvue::test {

/// Readers of image files write to the standard error output what they dislike: not while this object lives.
class Silence {
public:
    Silence() : kept_(dup(2)) {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, 2);
        close(nowhere);
    }
    ~Silence() {
        dup2(kept_, 2);
        close(kept_);
    }

private:
    int kept_;
};

} // namespace libvue::test
