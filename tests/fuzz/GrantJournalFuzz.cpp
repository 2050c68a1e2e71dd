#include "Fuzz.h"
#include "core/GrantJournal.h"

#include <string>

using quorvane::service::journalLine;
using quorvane::service::usedGrantIn;

void fuzzOne(std::string_view bytes) {
    const auto grant = usedGrantIn(bytes);
    if (!grant) {
        return;
    }
    const std::string line = journalLine(*grant);
    must(line.find('\n') == line.size() - 1, "a grant is written as one line");
    must(usedGrantIn(line) == grant, "what is written is read as it was");
    must(!usedGrantIn(std::string_view(line).substr(0, line.size() - 2)), "a part of a line is no grant");
}
