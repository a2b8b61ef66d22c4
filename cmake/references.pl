# Finds plain pointers into a Ref that goes at the end of its statement, in the sources that the standard input names:
#
#     auto* s = as<NSString>(o->valueForKey(key));
#     for (NSObject* o : *list->mutableCopyWithZone()) ...
#
# Known to answer a Ref are the functions that the same sources declare so, unless one of that name answers a pointer or
# a reference.
use strict;
use warnings;
my (%ref, %other, %text);
while (my $path = <STDIN>) {
    chomp $path;
    open my $file, '<', $path or die "$path: $!\n";
    local $/;
    my $s = <$file>;
    # Neither comments nor what stands between quotes.
    $s =~ s{("(?:[^"\\\n]|\\.)*")|'(?:[^'\\\n]|\\.)+'|//[^\n]*}{defined $1 ? '""' : ''}ge;
    $text{$path} = $s;
    $ref{$1} = 1 while $s =~ /\bRef<[^;(){}=]*>\s+(?:\w+::)*(\w+)\s*\(/g;
    $other{$1} = 1 while $s =~ /[\w>]\s*[*&]+\s*(?:const\s+)?(?:\w+::)*(\w+)\s*\(/g;
}
my $braces = qr/(\((?:[^()]++|(?-1))*+\))/;
sub dies {
    my ($expression) = @_;
    $expression =~ s/\.get\(\)\s*$//;
    return $expression =~ /(\w+)\s*$braces\s*$/ && $ref{$1} && !$other{$1};
}
my $faults = 0;
sub fault {
    my ($path, $from, $what) = @_;
    my $line = 1 + (substr($text{$path}, 0, $from) =~ tr/\n//);
    print "$path:$line: $what\n";
    $faults = 1;
}
for my $path (sort keys %text) {
    my $s = $text{$path};
    while ($s =~ /\*\s*(?:const\s+)?\w+\s*=\s*(?:libvue::)?as<[^<>()]*>$braces(?=\s*(?:[;,)]|&&|\|\|))/g) {
        my ($from, $expression) = ($-[0], $1);
        fault($path, $from, "the object that as<> is asked about goes at the end of the statement: keep it in a Ref")
            if dies(substr $expression, 1, -1);
    }
    while ($s =~ /\bfor\s*(\((?:[^()]++|$braces)*+\))/g) {
        my ($from, $head) = ($-[0], substr($1, 1, -1));
        next unless $head =~ /^(?:[^;:?]|::)+:(?!:)\s*(.*)$/s;
        my $list = $1;
        $list =~ s/->as<[^<>()]*>\(\)\s*$// or $list =~ s/^\*\s*// or next;
        fault($path, $from, "the list goes before the loop begins: keep it in a Ref") if dies($list);
    }
}
exit $faults;
