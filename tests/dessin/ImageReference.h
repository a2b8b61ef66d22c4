#pragma once

#include <string>

#include <gtest/gtest.h>

#include <libvue/platform/backend/Canvas.h>

namespace libvue::test {

/// Whether the pixels look like the picture NAME.png in tests/images: the same size, and the same to the eye. Edges
/// that were smoothed in another way, or letters of another version of a font, pass; a colour, an order, a shape or a
/// label that is another does not. Where they differ, NAME.obtenue.png beside the reference shows what was drawn.
///
/// With LIBVUE_RENOUVELLE_IMAGES set in the environment the reference is written instead, and the test fails so that
/// nobody takes a renewal for a pass.
[[nodiscard]] ::testing::AssertionResult ressemble(const backend::Picture& image, const std::string& nom);

/// What two pictures that look alike may differ by: other smoothing stays far below, a letter that is another one does
/// not.
inline constexpr double kEcartMax = 12;
/// The largest mean difference of a small square of both pictures, on white, 0 to 255; of pictures of different sizes
/// 255.
[[nodiscard]] double ecart(const backend::Picture& a, const backend::Picture& b);

} // namespace libvue::test
