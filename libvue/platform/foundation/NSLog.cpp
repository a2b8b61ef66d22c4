#include <cstdio>
#include <string>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

LogSink installedSink = nullptr;
void* sinkContext = nullptr;

} // namespace

void NSLog(const NSString* format, ...) {
    if (!format) return;
    va_list arguments;
    va_start(arguments, format);
    const Ref<NSString> line = NSString::initWithFormat_arguments(format, arguments);
    va_end(arguments);
    if (installedSink) return installedSink(line, sinkContext);
    std::string bytes = line->utf8();
    bytes += '\n';
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

void installLogSink(LogSink sink, void* context) {
    installedSink = sink;
    sinkContext = context;
}

} // namespace libvue
