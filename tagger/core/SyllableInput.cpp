// SPDX-License-Identifier: MIT
#include "SyllableInput.h"

#include <unordered_set>

#include "Syllables.h"

namespace zphonetic::tagger {
namespace {

// Every syllable the dictionaries use, without its tone: the standard table of Mandarin, the
// few interjections and dialect words of the sources (hm, hng, fiao, ...), and r, the fused 儿 as
// books with a reading over every character print it (一会儿 yí huì r).
constexpr char16_t kSyllables[] =
    u"a ai an ang ao ba bai ban bang bao bei ben beng bi bian biao bie bin bing bo bu ca cai "
    u"can cang cao ce cen ceng cha chai chan chang chao che chen cheng chi chong chou chu chua "
    u"chuai chuan chuang chui chun chuo ci cong cou cu cuan cui cun cuo da dai dan dang dao de "
    u"dei den deng di dia dian diao die ding diu dong dou du duan dui dun duo e ei en eng er "
    u"fa fan fang fei fen feng fiao fo fou fu ga gai gan gang gao ge gei gen geng gong gou gu "
    u"gua guai guan guang gui gun guo ha hai han hang hao he hei hen heng hm hng hong hou hu "
    u"hua huai huan huang hui hun huo ji jia jian jiang jiao jie jin jing jiong jiu ju juan "
    u"jue jun ka kai kan kang kao ke kei ken keng kong kou ku kua kuai kuan kuang kui kun kuo "
    u"la lai lan lang lao le lei leng li lia lian liang liao lie lin ling liu lo long lou lu "
    u"luan lun luo lü lüe m ma mai man mang mao me mei men meng mi mian miao mie min ming miu "
    u"mo mou mu n na nai nan nang nao ne nei nen neng ng ni nian niang niao nie nin ning niu "
    u"nong nou nu nuan nun nuo nü nüe o ou pa pai pan pang pao pei pen peng pi pian piao pie "
    u"pin ping po pou pu qi qia qian qiang qiao qie qin qing qiong qiu qu quan que qun r ran "
    u"rang rao re ren reng ri rong rou ru rua ruan rui run ruo sa sai san sang sao se sen seng "
    u"sha shai shan shang shao she shei shen sheng shi shou shu shua shuai shuan shuang shui "
    u"shun shuo si song sou su suan sui sun suo ta tai tan tang tao te tei teng ti tian tiao "
    u"tie ting tong tou tu tuan tui tun tuo wa wai wan wang wei wen weng wo wu xi xia xian "
    u"xiang xiao xie xin xing xiong xiu xu xuan xue xun ya yan yang yao ye yi yin ying yo yong "
    u"you yu yuan yue yun za zai zan zang zao ze zei zen zeng zha zhai zhan zhang zhao zhe "
    u"zhei zhen zheng zhi zhong zhou zhu zhua zhuai zhuan zhuang zhui zhun zhuo zi zong zou zu "
    u"zuan zui zun zuo ê";

bool isSyllable(const std::u16string& letters) {
    static const std::unordered_set<std::u16string> syllables = [] {
        std::unordered_set<std::u16string> set;
        const std::u16string_view all(kSyllables);
        for (size_t start = 0; start < all.size();) {
            size_t end = all.find(u' ', start);
            if (end == std::u16string_view::npos) end = all.size();
            set.emplace(all.substr(start, end - start));
            start = end + 1;
        }
        return set;
    }();
    return syllables.count(letters) != 0;
}

// The tone of a combining tone mark, or 0.
uint8_t combiningTone(char16_t c) {
    switch (c) {
        case u'\u0304':
            return 1;
        case u'\u0301':
            return 2;
        case u'\u030C':
            return 3;
        case u'\u0300':
            return 4;
        default:
            return 0;
    }
}

// Where the tone mark goes: on a, else e (or ê), else the o of "ou", else the last vowel; on
// m or n in a syllable without vowels (ḿ, ńg).
size_t markPosition(const std::u16string& letters) {
    for (char16_t first : {u'a', u'e', u'ê'}) {
        if (const size_t at = letters.find(first); at != std::u16string::npos) return at;
    }
    if (const size_t at = letters.find(u"ou"); at != std::u16string::npos) return at;
    if (const size_t at = letters.find_last_of(u"iouü"); at != std::u16string::npos) return at;
    return letters.find_first_of(u"mn");
}

// "jü" and the like are spelt "ju"; "lue" and "nue" are "lüe" and "nüe".
std::u16string standardLetters(std::u16string letters) {
    if (isSyllable(letters) || letters.size() < 2) return letters;
    if (letters[1] == u'ü' &&
        std::u16string_view(u"jqxy").find(letters[0]) != std::u16string_view::npos) {
        letters[1] = u'u';
    } else if (letters == u"lue" || letters == u"nue") {
        letters[1] = u'ü';
    }
    return letters;
}

}  // namespace

std::optional<std::u16string> spellSyllable(std::u16string_view typed) {
    std::u16string letters;
    uint8_t tone = 0;  // 0: none given yet
    const auto setTone = [&tone](uint8_t t) {
        if (tone != 0) return false;
        tone = t;
        return true;
    };
    for (size_t i = 0; i < typed.size(); ++i) {
        char16_t c = typed[i];
        if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
        if (c == u'v') c = u'ü';
        const bool afterLetter = !letters.empty();
        if ((c >= u'a' && c <= u'z') || c == u'ü' || c == u'ê') {
            letters.push_back(c);
        } else if (c == u':' && afterLetter && letters.back() == u'u') {
            letters.back() = u'ü';
        } else if (c == u'\u0308' && afterLetter && letters.back() == u'u') {
            letters.back() = u'ü';
        } else if (const uint8_t t = combiningTone(c); t != 0 && afterLetter) {
            if (!setTone(t)) return std::nullopt;
        } else if (c >= u'0' && c <= u'5' && i + 1 == typed.size() && afterLetter) {
            if (!setTone(c == u'0' ? 5 : static_cast<uint8_t>(c - u'0'))) return std::nullopt;
        } else if (const MarkedLetter m = unmarkLetter(c); m.letter != 0) {
            letters.push_back(m.letter);
            if (m.tone != 5 && !setTone(m.tone)) return std::nullopt;
        } else {
            return std::nullopt;
        }
    }
    letters = standardLetters(std::move(letters));
    if (!isSyllable(letters)) return std::nullopt;
    if (tone == 0 || tone == 5) return letters;
    const size_t at = markPosition(letters);
    const char16_t marked = at == std::u16string::npos ? 0 : markLetter(letters[at], tone);
    if (marked == 0) return std::nullopt;
    letters[at] = marked;
    return letters;
}

}  // namespace zphonetic::tagger
