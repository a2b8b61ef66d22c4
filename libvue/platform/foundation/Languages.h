#pragma once

#include <string>
#include <vector>

namespace libvue {

/// The languages of the user as "fr_CA" or "fr", best first: those of LANGUAGE, then of LC_ALL, LC_MESSAGES or LANG.
/// Without any of these, or with "C", French alone, which the code is written in.
std::vector<std::string> userLanguages();

/// A locale's name without its encoding and variant; empty for "C" and "POSIX".
std::string bareLocale(const char* name);

} // namespace libvue
