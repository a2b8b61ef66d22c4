#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

using CGPoint = NSPoint;
using CGSize = NSSize;
using CGRect = NSRect;

/// π.
inline constexpr double pi = 3.14159265358979323846;

// The context's operations under their plain names. A null context does nothing.

LIBVUE_API void CGContextSaveGState(CGContextRef context);
LIBVUE_API void CGContextRestoreGState(CGContextRef context);
LIBVUE_API void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
LIBVUE_API void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);

/// Which components a shading's colours have, before alpha.
enum class CGColorSpace : unsigned char { deviceGray, deviceRGB };
using CGColorSpaceRef = CGColorSpace;
[[nodiscard]] constexpr CGColorSpaceRef CGColorSpaceCreateDeviceGray() noexcept { return CGColorSpace::deviceGray; }
[[nodiscard]] constexpr CGColorSpaceRef CGColorSpaceCreateDeviceRGB() noexcept { return CGColorSpace::deviceRGB; }
/// 1 or 3.
[[nodiscard]] constexpr NSUInteger CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space) noexcept {
    return space == CGColorSpace::deviceGray ? 1 : 3;
}

/// How a function is computed: `evaluate` reads the input and writes the outputs; `releaseInfo` (may be null) frees
/// `info` with the function.
struct CGFunctionCallbacks {
    unsigned version = 0;
    void (*evaluate)(void* info, const CGFloat* in, CGFloat* out) = nullptr;
    void (*releaseInfo)(void* info) = nullptr;
};

/// A function of numbers, made by CGFunctionCreate.
class LIBVUE_API CGFunction : public NSObject {
public:
    static constexpr NSUInteger maximumOutputs = 8;

    ~CGFunction() override;
    [[nodiscard]] NSUInteger outputs() const noexcept { return outputs_; }
    [[nodiscard]] CGFloat domainStart() const noexcept { return domain_[0]; }
    [[nodiscard]] CGFloat domainEnd() const noexcept { return domain_[1]; }
    /// Writes `outputs()` numbers, held to the range.
    void evaluate(CGFloat in, CGFloat* out) const;
    /// Says that it is linear between the ends of the domain, but for one bend in its middle where `bends`: a shading
    /// then needs no samples of it.
    void setLinear(BOOL bends) noexcept { knots_ = bends ? 3 : 2; }
    /// How many values tell all of it: 2 or 3 where it is linear, 0 where nobody said.
    [[nodiscard]] NSUInteger knots() const noexcept { return knots_; }

private:
    friend LIBVUE_API Ref<CGFunction> CGFunctionCreate(void*, NSUInteger, const CGFloat*, NSUInteger, const CGFloat*,
                                                       const CGFunctionCallbacks*);
    CGFunction() = default;
    void* info_ = nullptr;
    CGFunctionCallbacks callbacks_;
    CGFloat domain_[2] = {0, 1};
    CGFloat range_[2 * maximumOutputs] = {};
    NSUInteger outputs_ = 0;
    NSUInteger knots_ = 0;
    bool ranged_ = false;
};

/// A function of one input. `domain` and `range` are pairs of bounds; a null domain is [0, 1], a null range is none.
/// Null where there is more than one input, more outputs than CGFunction::maximumOutputs, or nothing to evaluate;
/// `info` stays the caller's then. The reference ends the function: there is nothing to release by hand.
[[nodiscard]] LIBVUE_API Ref<CGFunction> CGFunctionCreate(void* info, NSUInteger inputs, const CGFloat* domain,
                                                          NSUInteger outputs, const CGFloat* range,
                                                          const CGFunctionCallbacks* callbacks);

/// Colours along an axis, made by CGShadingCreateAxial.
class LIBVUE_API CGShading : public NSObject {
public:
    CGShading(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunction* function, BOOL extendStart,
              BOOL extendEnd);
    ~CGShading() override;
    /// Paints it into the clip of the context.
    void draw(NSGraphicsContext& context) const;

private:
    CGColorSpaceRef space_;
    NSPoint start_, end_;
    Ref<CGFunction> function_;
    bool extendStart_, extendEnd_;
};

/// Null without a function that gives the space's components and alpha. What is not extended stays unpainted beyond its
/// end.
[[nodiscard]] LIBVUE_API Ref<CGShading> CGShadingCreateAxial(CGColorSpaceRef space, CGPoint start, CGPoint end,
                                                             CGFunction* function, BOOL extendStart, BOOL extendEnd);
LIBVUE_API void CGContextDrawShading(CGContextRef context, const CGShading* shading);

} // namespace libvue
