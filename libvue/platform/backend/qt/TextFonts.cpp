#include <libvue/platform/backend/qt/TextFonts.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <typeinfo>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <QByteArray>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>

#include <libvue/platform/backend/qt/QtApplication.h>

namespace libvue::backend {

namespace {

constexpr double defaultSize = 12;

/// Families that stand in for others, so that every machine shows the same. The first one that is installed is taken.
struct Substitution {
    std::array<const char*, 3> families;
    std::string_view names; // in lower case without spaces, each between bars
};
constexpr Substitution substitutions[] = {
    {{"Liberation Sans", "DejaVu Sans", "sans-serif"},
     "|helvetica|helveticaneue|arial|lucidagrande|lucidasans|geneva|tahoma|system|systemfont|sansserif|sans|"},
    {{"DejaVu Sans", "Liberation Sans", "sans-serif"}, "|verdana|"},
    {{"Liberation Serif", "DejaVu Serif", "serif"},
     "|times|timesnewroman|timesroman|georgia|palatino|garamond|baskerville|serif|"},
    {{"Liberation Mono", "DejaVu Sans Mono", "monospace"}, "|courier|couriernew|"},
    {{"DejaVu Sans Mono", "Liberation Mono", "monospace"}, "|menlo|monaco|andalemono|consolas|monospace|"},
};

struct Style {
    int weight = QFont::Normal;
    bool italic = false;
};

std::string folded(std::string_view name) {
    std::string out;
    for (const char c : name)
        if (c != ' ' && c != '-' && c != '_') out += c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    return out;
}

const Substitution* substitutionFor(std::string_view foldedName) {
    if (foldedName.empty()) return nullptr;
    const std::string key = '|' + std::string(foldedName) + '|';
    for (const Substitution& s : substitutions)
        if (s.names.find(key) != std::string_view::npos) return &s;
    return nullptr;
}

/// The installed families: folded name to the name itself.
const std::unordered_map<std::string, QString>& installed() {
    static const std::unordered_map<std::string, QString> all = [] {
        std::unordered_map<std::string, QString> found;
        const QStringList names = QFontDatabase::families();
        for (const QString& name : names)
            found.emplace(folded(name.toStdString()), name);
        return found;
    }();
    return all;
}

/// What a PostScript-like name says behind its hyphen; nothing where that is no style.
std::optional<Style> parseStyle(std::string_view suffix) {
    struct Word {
        std::string_view text;
        int weight;
        bool italic;
    };
    // Longer words stand before those that they hold.
    static constexpr Word words[] = {
        {"semibold", QFont::DemiBold, false},
        {"demibold", QFont::DemiBold, false},
        {"extrabold", QFont::ExtraBold, false},
        {"ultralight", QFont::ExtraLight, false},
        {"extralight", QFont::ExtraLight, false},
        {"thin", QFont::Thin, false},
        {"light", QFont::Light, false},
        {"medium", QFont::Medium, false},
        {"demi", QFont::DemiBold, false},
        {"bold", QFont::Bold, false},
        {"heavy", QFont::ExtraBold, false},
        {"black", QFont::Black, false},
        {"italic", 0, true},
        {"oblique", 0, true},
        {"regular", 0, false},
        {"roman", 0, false},
        {"book", 0, false},
        {"condensed", 0, false},
        {"psmt", 0, false},
        {"mt", 0, false},
        {"ps", 0, false},
        {"it", 0, true},
    };
    Style style;
    std::string rest = folded(suffix);
    while (!rest.empty()) {
        const auto word =
            std::find_if(std::begin(words), std::end(words), [&](const Word& w) { return rest.starts_with(w.text); });
        if (word == std::end(words)) return std::nullopt;
        if (word->weight != 0) style.weight = word->weight;
        style.italic = style.italic || word->italic;
        rest.erase(0, word->text.size());
    }
    return style;
}

struct Request {
    QStringList families;
    Style style;
    bool known = false;
};

std::optional<QStringList> familiesFor(std::string_view name) {
    std::string key = folded(name);
    const Substitution* s = substitutionFor(key);
    for (const std::string_view ending : {"psmt", "mt", "ps"}) {
        if (s != nullptr || !key.ends_with(ending)) continue;
        s = substitutionFor(std::string_view(key).substr(0, key.size() - ending.size()));
    }
    const auto& fonts = installed();
    if (s != nullptr) {
        QStringList list;
        for (const char* family : s->families)
            if (fonts.contains(folded(family))) list.append(QString::fromLatin1(family));
        list.append(QString::fromLatin1(s->families.back()));
        return list;
    }
    if (const auto found = fonts.find(key); found != fonts.end()) return QStringList{found->second};
    return std::nullopt;
}

Request parse(std::string_view name) {
    Request request;
    if (auto families = familiesFor(name)) {
        request.families = *std::move(families);
        request.known = true;
    } else if (const auto hyphen = name.rfind('-'); hyphen != std::string_view::npos && hyphen > 0) {
        const auto style = parseStyle(name.substr(hyphen + 1));
        auto base = familiesFor(name.substr(0, hyphen));
        if (style) request.style = *style;
        if (style && base) {
            request.families = *std::move(base);
            request.known = true;
        }
    }
    if (!request.known) request.families = *familiesFor("helvetica");
    // Symbols that a family lacks come from the same place on every machine.
    if (!request.families.contains(QLatin1String("DejaVu Sans")))
        request.families.append(QStringLiteral("DejaVu Sans"));
    return request;
}

double dotsPerInch() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr && screen->logicalDotsPerInchY() > 0 ? screen->logicalDotsPerInchY() : 96;
}

QFont makeFont(const QStringList& families, const Style& style, double pointSize) {
    QFont font;
    font.setFamilies(families);
    // Our points are pixels at scale 1; the shaper's depend on the screen's resolution.
    font.setPointSizeF(pointSize * 72 / dotsPerInch());
    font.setWeight(static_cast<QFont::Weight>(style.weight));
    font.setItalic(style.italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias | QFont::PreferOutline));
    return font;
}

int platformWeight(int weight) noexcept {
    static constexpr std::pair<int, int> scale[] = {{150, 2}, {350, 3}, {450, 5},  {550, 6},
                                                    {650, 8}, {750, 9}, {850, 11}, {950, 12}};
    for (const auto& [below, value] : scale)
        if (weight < below) return value;
    return 14;
}

std::optional<int> signed16(const QByteArray& table, qsizetype at) {
    if (at + 2 > table.size()) return std::nullopt;
    const int v = (static_cast<unsigned char>(table[at]) << 8) | static_cast<unsigned char>(table[at + 1]);
    return v >= 0x8000 ? v - 0x10000 : v;
}

} // namespace

RasterFontFace::RasterFontFace(std::string requested, const QFont& font, double pointSize)
    : requested_(std::move(requested)), font_(font), raw_(QRawFont::fromFont(font_)), pointSize_(pointSize) {
    family_ = raw_.isValid() ? raw_.familyName().toStdString() : font_.family().toStdString();
    weight_ = platformWeight(font_.weight());
    looksNoFarther_ = std::any_of(std::begin(substitutions), std::end(substitutions), [&](const Substitution& s) {
        return family_ == s.families[0] || family_ == s.families[1];
    });
    if (font_.italic()) traits_ |= fontItalic;
    if (font_.weight() >= QFont::DemiBold) traits_ |= fontBold;

    ascender_ = raw_.ascent();
    descender_ = -raw_.descent();
    leading_ = raw_.leading();
    xHeight_ = raw_.xHeight();
    capHeight_ = raw_.capHeight();
    underlinePosition_ = -raw_.underlinePosition();
    underlineThickness_ = raw_.lineThickness();
    maximumAdvance_ = raw_.maxCharWidth();
    const double unit = raw_.unitsPerEm() > 0 ? pointSize_ / raw_.unitsPerEm() : 0;
    if (unit == 0) return;
    const QByteArray horizontal = raw_.fontTable("hhea");
    const auto up = signed16(horizontal, 4);
    const auto down = signed16(horizontal, 6);
    if (up && down && *up - *down > 0) {
        ascender_ = *up * unit;
        descender_ = *down * unit;
        leading_ = std::max(0, signed16(horizontal, 8).value_or(0)) * unit;
        if (const auto widest = signed16(horizontal, 10)) maximumAdvance_ = *widest * unit;
    }
    const QByteArray heights = raw_.fontTable("OS/2");
    if (signed16(heights, 0).value_or(0) >= 2) {
        if (const auto x = signed16(heights, 86); x && *x > 0) xHeight_ = *x * unit;
        if (const auto cap = signed16(heights, 88); cap && *cap > 0) capHeight_ = *cap * unit;
    }
    const QByteArray post = raw_.fontTable("post");
    // Some fonts put it so near to the baseline that it touches the letters.
    constexpr double nearest = -0.1;
    if (const auto position = signed16(post, 8)) underlinePosition_ = std::min(*position * unit, nearest * pointSize_);
    if (const auto thickness = signed16(post, 10); thickness && *thickness > 0) underlineThickness_ = *thickness * unit;
    if (signed16(post, 12).value_or(0) != 0 || signed16(post, 14).value_or(0) != 0) traits_ |= fontFixedPitch;
}

bool RasterFontFace::covers(char32_t character) const {
    return raw_.isValid() && raw_.supportsCharacter(static_cast<uint>(character));
}

double RasterFontFace::ellipsisAdvance() const {
    if (ellipsis_ < 0) ellipsis_ = QFontMetricsF(font_).horizontalAdvance(QChar(0x2026));
    return ellipsis_;
}

PlainGlyphs* RasterFontFace::plainGlyphs() const {
    if (!looksNoFarther_) return nullptr;
    if (!plain_) plain_ = std::make_unique<PlainGlyphs>();
    return plain_.get();
}

const RasterFontFace& rasterFace(const FontFace* face) {
    if (face != nullptr && typeid(*face) == typeid(RasterFontFace)) return *static_cast<const RasterFontFace*>(face);
    static const std::shared_ptr<const RasterFontFace> fallback = fonts::find({}, defaultSize, 0);
    return *fallback;
}

namespace fonts {

std::shared_ptr<const RasterFontFace> find(std::string_view name, double pointSize, std::uint32_t traits) {
    constexpr double largest = 4000;
    constexpr std::size_t kept = 512;
    struct Key {
        std::string name;
        double size;
        std::uint32_t traits;
        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key& k) const noexcept {
            return std::hash<std::string>()(k.name) ^ (std::hash<double>()(k.size) * 31) ^ k.traits;
        }
    };
    static std::unordered_map<Key, std::shared_ptr<const RasterFontFace>, Hash> faces;

    const double size = std::isfinite(pointSize) && pointSize > 0 ? std::clamp(pointSize, 0.25, largest) : defaultSize;
    Key key{std::string(name), size, traits};
    if (const auto found = faces.find(key); found != faces.end()) return found->second;
    Request request = parse(name);
    if ((traits & fontBold) != 0 && request.style.weight < QFont::Bold) request.style.weight = QFont::Bold;
    if ((traits & fontItalic) != 0) request.style.italic = true;
    if ((traits & fontFixedPitch) != 0 && !request.known) request.families = *familiesFor("courier");
    auto face = std::make_shared<RasterFontFace>(key.name, makeFont(request.families, request.style, size), size);
    if (faces.size() >= kept) faces.clear();
    faces.emplace(std::move(key), face);
    return face;
}

bool isKnown(std::string_view name) { return !name.empty() && parse(name).known; }

std::vector<std::string> families() {
    std::vector<std::string> names;
    for (const auto& [key, name] : installed())
        names.push_back(name.toStdString());
    std::sort(names.begin(), names.end());
    return names;
}

std::string systemFamily() { return familiesFor("system")->first().toStdString(); }

QFont placeholder(double pointSize) {
    QFont font = makeFont(parse("helvetica").families.mid(0, 1), {}, pointSize);
    font.setStyleStrategy(static_cast<QFont::StyleStrategy>(font.styleStrategy() | QFont::NoFontMerging));
    return font;
}

} // namespace fonts

} // namespace libvue::backend
