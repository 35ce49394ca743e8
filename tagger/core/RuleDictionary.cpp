// SPDX-License-Identifier: MIT
#include "RuleDictionary.h"

#include <algorithm>
#include <cstdlib>

#include "TextLines.h"
#include "Utf16.h"

namespace zphonetic::tagger {
namespace {

constexpr uint32_t kClassIndexSection = 3;
constexpr uint32_t kClassCharSection = 4;
constexpr uint32_t kNameIndexSection = 5;
constexpr uint32_t kNameSection = 6;
constexpr uint32_t kRuleSection = 7;
constexpr uint32_t kElementSection = 8;

std::vector<RuleElement> parsePattern(size_t lineNo, const std::string& field,
                                      const std::vector<RuleSet::Class>& classes) {
    const std::u16string text = toUtf16(field);
    std::vector<RuleElement> out;
    int targets = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'_' || c == u'=') {
            out.push_back({c == u'_' ? RuleElement::kTarget : RuleElement::kWordTarget, 0});
            ++targets;
        } else if (c == u'.' || c == u'~' || c == u'@') {
            out.push_back({c == u'.'   ? RuleElement::kAny
                           : c == u'~' ? RuleElement::kRepeat
                                       : RuleElement::kInWord,
                           0});
        } else if (c == u'!') {
            if (i + 1 >= text.size() || text[i + 1] == u'_' || text[i + 1] == u'=') {
                throw lineError(lineNo, "\"!\" must come before a character");
            }
            out.push_back({RuleElement::kAloneChar, text[++i]});
        } else if (c == u'^' || c == u'$') {
            if ((c == u'^' && i != 0) || (c == u'$' && i + 1 != text.size())) {
                throw lineError(lineNo, "\"^\" must open and \"$\" must close a pattern");
            }
            out.push_back({c == u'^' ? RuleElement::kStart : RuleElement::kEnd, 0});
        } else if (c == u'{') {
            const size_t close = text.find(u'}', i);
            if (close == std::u16string::npos) throw lineError(lineNo, "unclosed \"{\"");
            const std::string name = toUtf8(text.substr(i + 1, close - i - 1));
            auto it = std::find_if(classes.begin(), classes.end(),
                                   [&](const RuleSet::Class& k) { return k.name == name; });
            if (it == classes.end()) throw lineError(lineNo, "unknown class \"" + name + "\"");
            out.push_back({RuleElement::kClass, static_cast<uint16_t>(it - classes.begin())});
            i = close;
        } else {
            out.push_back({RuleElement::kChar, c});
        }
    }
    if (targets != 1) throw lineError(lineNo, "a pattern needs exactly one \"_\" or \"=\"");
    return out;
}

std::string formatPattern(const std::vector<RuleElement>& pattern,
                          const std::vector<RuleSet::Class>& classes) {
    std::u16string out;
    for (const RuleElement& e : pattern) {
        switch (e.kind) {
            case RuleElement::kChar:
                out.push_back(e.value);
                break;
            case RuleElement::kClass:
                out +=
                    u"{" + toUtf16(e.value < classes.size() ? classes[e.value].name : "?") + u"}";
                break;
            case RuleElement::kStart:
                out.push_back(u'^');
                break;
            case RuleElement::kEnd:
                out.push_back(u'$');
                break;
            case RuleElement::kTarget:
                out.push_back(u'_');
                break;
            case RuleElement::kAny:
                out.push_back(u'.');
                break;
            case RuleElement::kRepeat:
                out.push_back(u'~');
                break;
            case RuleElement::kInWord:
                out.push_back(u'@');
                break;
            case RuleElement::kWordTarget:
                out.push_back(u'=');
                break;
            case RuleElement::kAloneChar:
                out.push_back(u'!');
                out.push_back(e.value);
                break;
        }
    }
    return toUtf8(out);
}

bool isClassName(const std::string& name) {
    if (name.empty()) return false;
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
}

std::vector<size_t> compiledOrder(const RuleSet& set) {
    std::vector<size_t> order(set.rules.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return set.rules[a].target < set.rules[b].target; });
    return order;
}

}  // namespace

RuleSet parseRuleText(const std::string& text) {
    RuleSet set;
    appendRuleText(text, set);
    return set;
}

void appendRuleText(const std::string& text, RuleSet& set) {
    forEachLine(text, [&](size_t lineNo, const std::vector<std::string>& f) {
        if (f[0] == "class" && f.size() == 3) {
            if (!isClassName(f[1])) {
                throw lineError(lineNo, "class name \"" + f[1] + "\" is not A-Z, 0-9 or _");
            }
            for (const RuleSet::Class& k : set.classes) {
                if (k.name == f[1]) throw lineError(lineNo, "class \"" + f[1] + "\" defined twice");
            }
            std::u16string chars = toUtf16(f[2]);
            std::sort(chars.begin(), chars.end());
            chars.erase(std::unique(chars.begin(), chars.end()), chars.end());
            if (chars.empty()) throw lineError(lineNo, "class \"" + f[1] + "\" is empty");
            set.classes.push_back({f[1], std::move(chars)});
        } else if (f[0] == "rule" && f.size() == 4) {
            // Several targets, each with its own reading, share one pattern (the surnames).
            const std::u16string targets = toUtf16(f[1]);
            const std::vector<std::u16string> readings = splitSyllables(lineNo, f[2]);
            if (targets.empty() || readings.size() != targets.size()) {
                throw lineError(lineNo, "one reading per target");
            }
            const std::vector<RuleElement> pattern = parsePattern(lineNo, f[3], set.classes);
            for (size_t k = 0; k < targets.size(); ++k) {
                set.rules.push_back({targets[k], readings[k], pattern});
            }
        } else {
            throw lineError(lineNo,
                            "expected \"class NAME CHARS\" or \"rule CHAR READING PATTERN\"");
        }
    });
    if (set.classes.size() > 0xFFFF) throw FormatError("more than 65535 classes");
}

std::string formatRuleText(const RuleSet& set) {
    std::string out;
    for (const RuleSet::Class& k : set.classes) {
        out += "class\t" + k.name + "\t" + toUtf8(k.chars) + "\n";
    }
    for (size_t i : compiledOrder(set)) {
        const RuleSet::Rule& r = set.rules[i];
        out += "rule\t" + toUtf8(std::u16string(1, r.target)) + "\t" + toUtf8(r.reading) + "\t" +
               formatPattern(r.pattern, set.classes) + "\n";
    }
    return out;
}

std::vector<uint8_t> compileRules(const RuleSet& set) {
    SyllableTableBuilder syllables;
    std::vector<uint8_t> classIndex, classChars, nameIndex, names, rules, elements;
    uint32_t charAt = 0, nameAt = 0, elementAt = 0;
    for (const RuleSet::Class& k : set.classes) {
        appendLe<uint32_t>(classIndex, charAt);
        for (char16_t c : k.chars) appendLe<uint16_t>(classChars, c);
        charAt += static_cast<uint32_t>(k.chars.size());
        appendLe<uint32_t>(nameIndex, nameAt);
        for (char c : k.name) appendLe<uint16_t>(names, static_cast<uint8_t>(c));
        nameAt += static_cast<uint32_t>(k.name.size());
    }
    appendLe<uint32_t>(classIndex, charAt);
    appendLe<uint32_t>(nameIndex, nameAt);
    for (size_t i : compiledOrder(set)) {
        const RuleSet::Rule& r = set.rules[i];
        uint32_t targetPos = 0;
        for (size_t k = 0; k < r.pattern.size(); ++k) {
            if (r.pattern[k].kind == RuleElement::kTarget ||
                r.pattern[k].kind == RuleElement::kWordTarget) {
                targetPos = static_cast<uint32_t>(k);
            }
            appendLe<uint32_t>(elements, uint32_t{r.pattern[k].kind} << 16 | r.pattern[k].value);
        }
        appendLe<uint32_t>(rules, uint32_t{r.target} << 16 | syllables.add(r.reading));
        appendLe<uint32_t>(rules, elementAt);
        appendLe<uint32_t>(rules, static_cast<uint32_t>(r.pattern.size()));
        appendLe<uint32_t>(rules, targetPos);
        elementAt += static_cast<uint32_t>(r.pattern.size());
    }
    ContainerWriter writer(std::string_view(kRuleMagic, 8));
    syllables.writeTo(writer);
    writer.addSection(kClassIndexSection, 4, std::move(classIndex));
    writer.addSection(kClassCharSection, 2, std::move(classChars));
    writer.addSection(kNameIndexSection, 4, std::move(nameIndex));
    writer.addSection(kNameSection, 2, std::move(names));
    writer.addSection(kRuleSection, 4, std::move(rules));
    writer.addSection(kElementSection, 4, std::move(elements));
    return writer.finish();
}

RuleDictionary::RuleDictionary(const uint8_t* data, size_t size)
    : file_(data, size, std::string_view(kRuleMagic, 8)),
      syllables_(file_),
      classIndex_(file_.array<uint32_t>(kClassIndexSection)),
      classChars_(file_.array<uint16_t>(kClassCharSection)),
      nameIndex_(file_.array<uint32_t>(kNameIndexSection)),
      names_(file_.array<uint16_t>(kNameSection)),
      rules_(file_.array<uint32_t>(kRuleSection)),
      elements_(file_.array<uint32_t>(kElementSection)) {
    if (classIndex_.size() == 0 || nameIndex_.size() != classIndex_.size()) {
        throw FormatError("class tables are empty or of different sizes");
    }
    for (size_t k = 0; k + 1 < classIndex_.size(); ++k) {
        classStarts_.push_back(static_cast<uint32_t>(classMembers_.size()));
        for (size_t i = classIndex_.at(k); i < classIndex_.at(k + 1) && i < classChars_.size();
             ++i) {
            classMembers_.push_back(static_cast<char16_t>(classChars_.at(i)));
        }
    }
    classStarts_.push_back(static_cast<uint32_t>(classMembers_.size()));
    if (rules_.size() % 4 != 0) throw FormatError("rule section is not whole rules");
    for (size_t r = 0; r < rules_.size() / 4; ++r) {
        const auto target = static_cast<char16_t>(rules_.at(4 * r) >> 16);
        if (r > 0 && target < (rules_.at(4 * (r - 1)) >> 16)) {
            throw FormatError("rules are not sorted by target");
        }
        const uint32_t targetKind =
            elements_.at(size_t{rules_.at(4 * r + 1)} + rules_.at(4 * r + 3)) >> 16;
        (targetKind == RuleElement::kWordTarget ? inWord_ : alone_).add(target, prepare(r));
        if (targetKind == RuleElement::kWordTarget) wordTargetBits_ |= uint64_t{1} << (target & 63);
    }
    alone_.finish();
    inWord_.finish();
}

RuleDictionary::Rule RuleDictionary::prepare(size_t r) {
    // Spelt only for an error: the dictionaries are opened at every start.
    const auto fail = [r](const char* what) {
        throw FormatError("rule " + std::to_string(r) + what);
    };
    const uint32_t start = rules_.at(4 * r + 1);
    const uint32_t count = rules_.at(4 * r + 2);
    const uint32_t targetPos = rules_.at(4 * r + 3);
    if (size_t{start} + count > elements_.size() || targetPos >= count) {
        fail(" has a pattern out of range");
    }
    Rule rule;
    rule.firstCheck = static_cast<uint32_t>(checks_.size());
    rule.syllable = static_cast<uint16_t>(rules_.at(4 * r) & 0xFFFF);
    for (uint32_t k = 0; k < count; ++k) {
        const uint32_t e = elements_.at(size_t{start} + k);
        const auto kind = static_cast<uint16_t>(e >> 16);
        const auto value = static_cast<uint16_t>(e & 0xFFFF);
        const int32_t offset = static_cast<int32_t>(k) - static_cast<int32_t>(targetPos);
        const bool target = kind == RuleElement::kTarget || kind == RuleElement::kWordTarget;
        if (target != (offset == 0)) fail(" has not one target");
        if (kind > RuleElement::kAloneChar) fail(" has an unknown element");
        if (kind == RuleElement::kClass && size_t{value} + 1 >= classStarts_.size()) {
            fail(" names a class the file does not have");
        }
        if (kind != RuleElement::kStart && kind != RuleElement::kEnd) {
            // "~" compares its character with the one before it.
            rule.lowest = std::min(rule.lowest, kind == RuleElement::kRepeat ? offset - 1 : offset);
            rule.highest = std::max(rule.highest, offset);
        }
        if (!target && kind != RuleElement::kAny) checks_.push_back({offset, kind, value});
    }
    rule.checkCount = static_cast<uint32_t>(checks_.size()) - rule.firstCheck;
    // Nearest first, equals in the order written. A rule has a few checks: each is put in place
    // by insertion, as std::stable_sort would after asking for a buffer.
    const auto nearer = [](const Check& a, const Check& b) {
        return std::abs(a.offset) < std::abs(b.offset);
    };
    const auto first = checks_.begin() + rule.firstCheck;
    for (auto it = first; it != checks_.end(); ++it)
        std::rotate(std::upper_bound(first, it, *it, nearer), it, it + 1);
    return rule;
}

bool RuleDictionary::inClass(uint16_t cls, char16_t c) const {
    const auto first = classMembers_.begin() + classStarts_[cls];
    const auto last = classMembers_.begin() + classStarts_[cls + size_t{1}];
    return std::binary_search(first, last, c);
}

namespace {
// The marks given in full, as an array.
struct InWordMarks {
    const uint8_t* marks;
    bool inWord(size_t i) const { return marks[i] != 0; }
};
}  // namespace

void PathWords::markNextWord() {
    const size_t end = std::min(length_, marked_ + std::max<size_t>(lengths_[marked_], 1));
    const uint8_t mark = end - marked_ > 1 ? 1 : 0;
    for (; marked_ < end; ++marked_) marks_[marked_] = mark;
}

const Syllable* RuleDictionary::match(const char16_t* text, const uint8_t* inWord, size_t length,
                                      size_t at, bool wordTarget) const {
    InWordMarks marks{inWord};
    return firstMatch(text, marks, length, at, wordTarget);
}

const Syllable* RuleDictionary::match(const char16_t* text, PathWords& path, size_t length,
                                      size_t at, bool wordTarget) const {
    return firstMatch(text, path, length, at, wordTarget);
}

template <class InWord>
const Syllable* RuleDictionary::firstMatch(const char16_t* text, InWord& inWord, size_t length,
                                           size_t at, bool wordTarget) const {
    const TargetIndex& index = wordTarget ? inWord_ : alone_;
    const char16_t c = text[at];
    if (!index.has(c)) return nullptr;
    const Rule* candidate = nullptr;
    const Rule* candidatesEnd = nullptr;
    index.group(c, &candidate, &candidatesEnd);
    // "^" and "$" stand just outside the text; every other element needs its character inside.
    const auto target = static_cast<long long>(at);
    const auto end = static_cast<long long>(length);
    for (; candidate != candidatesEnd; ++candidate) {
        const Rule& rule = *candidate;
        if (target + rule.lowest < 0 || target + rule.highest >= end) continue;
        const Check* check = checks_.data() + rule.firstCheck;
        const Check* const last = check + rule.checkCount;
        for (; check != last; ++check) {
            const long long pos = target + check->offset;
            bool holds = false;
            switch (check->kind) {
                case RuleElement::kChar:
                    holds = text[pos] == check->value;
                    break;
                case RuleElement::kClass:
                    holds = inClass(check->value, text[pos]);
                    break;
                case RuleElement::kRepeat:
                    holds = text[pos] == text[pos - 1];
                    break;
                case RuleElement::kInWord:
                    holds = inWord.inWord(static_cast<size_t>(pos));
                    break;
                case RuleElement::kAloneChar:
                    holds = text[pos] == check->value && !inWord.inWord(static_cast<size_t>(pos));
                    break;
                case RuleElement::kStart:
                    holds = pos == -1;
                    break;
                case RuleElement::kEnd:
                    holds = pos == end;
                    break;
                default:
                    break;
            }
            if (!holds) break;
        }
        if (check == last) return syllables_.get(rule.syllable);
    }
    return nullptr;
}

RuleSet RuleDictionary::toRuleSet() const {
    RuleSet set;
    for (size_t k = 0; k + 1 < classIndex_.size(); ++k) {
        RuleSet::Class cls;
        for (size_t i = nameIndex_.at(k); i < nameIndex_.at(k + 1) && i < names_.size(); ++i) {
            cls.name.push_back(static_cast<char>(names_.at(i)));
        }
        for (size_t i = classIndex_.at(k); i < classIndex_.at(k + 1) && i < classChars_.size();
             ++i) {
            cls.chars.push_back(static_cast<char16_t>(classChars_.at(i)));
        }
        set.classes.push_back(std::move(cls));
    }
    for (size_t r = 0; r < rules_.size() / 4; ++r) {
        RuleSet::Rule rule;
        rule.target = static_cast<char16_t>(rules_.at(4 * r) >> 16);
        const Syllable* s = syllables_.get(rules_.at(4 * r) & 0xFFFF);
        if (s == nullptr) throw FormatError("rule " + std::to_string(r) + " has no reading");
        rule.reading = s->text();
        const uint32_t start = rules_.at(4 * r + 1);
        const uint32_t count = rules_.at(4 * r + 2);
        if (size_t{start} + count > elements_.size()) {
            throw FormatError("rule " + std::to_string(r) + " has a pattern out of range");
        }
        for (uint32_t k = 0; k < count; ++k) {
            const uint32_t e = elements_.at(size_t{start} + k);
            rule.pattern.push_back(
                {static_cast<RuleElement::Kind>(e >> 16), static_cast<uint16_t>(e & 0xFFFF)});
        }
        set.rules.push_back(std::move(rule));
    }
    return set;
}

}  // namespace zphonetic::tagger
