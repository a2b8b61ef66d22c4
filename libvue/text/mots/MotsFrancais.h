#pragma once

#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/mots/Forward.h>

namespace libvue {

// Where French words begin and end. A word is a run of letters, marks, digits and hyphens; an apostrophe that ends one
// belongs to it ("l'"), and "hui" behind an apostrophe is not a word of its own ("aujourd'hui").
//
// These are what doubleClickAtIndex and nextWordFromIndex_forward of NSAttributedString answer in every process that
// is linked with the toolkit. Indexes are UTF-16 units, and each unit is looked at by itself. Null counts as the empty
// text.

/// Why a double click selects what it selects.
enum class RegleMot : unsigned char {
    ponctuation,      ///< neither word nor blank: the mark alone
    mot,              ///< the run of word characters
    blancs,           ///< the run of blanks
    apostropheFinale, ///< an apostrophe follows, and no word behind it: it stays outside
    elision,          ///< an apostrophe and a word follow: the apostrophe is taken
    hui               ///< an apostrophe and the whole word "hui" follow: both are taken
};

struct ClicMot {
    NSRange plage;
    RegleMot regle;
};

/// What a double click on the unit at `i` selects. The look backwards stops at an apostrophe, so the second half of
/// "aujourd'hui" is selected alone. Raises NSRangeException for an index out of the text.
[[nodiscard]] LIBVUE_API ClicMot clicSurMot(const NSString* s, NSUInteger i);

/// Where a move forward by a word lands: behind the next word, with an apostrophe that ends it, whatever follows that.
/// An index at or beyond the end comes back unchanged.
[[nodiscard]] LIBVUE_API NSUInteger motSuivant(const NSString* s, NSUInteger i);

/// Where a move backwards by a word lands: on the first character of the word before `i`, 0 where there is none. It
/// knows nothing of apostrophes. Raises NSRangeException for an index beyond the end.
[[nodiscard]] LIBVUE_API NSUInteger motPrecedent(const NSString* s, NSUInteger i);

} // namespace libvue
