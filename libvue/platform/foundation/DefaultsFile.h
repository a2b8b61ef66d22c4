#pragma once

#include <string>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The file under NSUserDefaults: one JSON object. What JSON cannot say is an object of one tag: {"$data": base64},
/// {"$date": seconds since 2001}, {"$number": "nan"}; {"$dictionary": {…}} holds a dictionary that would be mistaken
/// for one of these.
enum class DefaultsFileState : std::uint8_t { missing, read, damaged };

/// Adds the file's values to `values`. Single values that make no sense are left out and said in the log.
DefaultsFileState readDefaultsFile(const std::string& path, NSMutableDictionary& values, std::string& fault);

/// Replaces the file as a whole, and makes its folder. False, and a reason, where that fails: the file is as it was.
bool writeDefaultsFile(const std::string& path, const NSDictionary& values, std::string& fault);

/// Renames the file to a name that no file has.
bool setDefaultsFileAside(const std::string& path, std::string& kept);

/// An unchanging copy of a value that a file can hold, or null where it holds anything else.
Ref<NSObject> defaultsValue(const NSObject* value);

} // namespace libvue
