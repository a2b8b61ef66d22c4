#pragma once

#include <memory>

#include <gtest/gtest.h>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/memory/MemoryClipboard.h>
#include <libvue/platform/backend/memory/MemoryWindowServer.h>

namespace libvue::test {

/// A fresh memory backend for the life of this object: windows, clipboard and virtual time.
class TestBackend {
public:
    TestBackend() { backend::Backend::install(backend::makeMemoryBackend()); }
    ~TestBackend() { backend::Backend::install(nullptr); }
    TestBackend(const TestBackend&) = delete;
    TestBackend& operator=(const TestBackend&) = delete;

    [[nodiscard]] backend::MemoryWindowServer& windows() const {
        return dynamic_cast<backend::MemoryWindowServer&>(*backend::Backend::current().windows);
    }
    [[nodiscard]] backend::MemoryClipboard& clipboard() const {
        return dynamic_cast<backend::MemoryClipboard&>(*backend::Backend::current().clipboard);
    }
    [[nodiscard]] backend::MemoryClipboard& findText() const {
        return dynamic_cast<backend::MemoryClipboard&>(*backend::Backend::current().findText);
    }
};

/// A test that runs in a memory backend of its own.
struct MemoryFixture : ::testing::Test {
    TestBackend backend;
    [[nodiscard]] backend::MemoryWindowServer& windows() const { return backend.windows(); }
};

} // namespace libvue::test
