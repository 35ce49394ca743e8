// SPDX-License-Identifier: MIT
// pinyin-speed: Google Benchmark programs for the tagging library, loaded with dlopen as the
// add-on loads it.
//   Sentences/PinyinTagger     one PinyinTagSen call per corpus sentence, as the add-on calls it
//   Sentences/PinyinReference  the same through the reference library (one hash lookup per
//                              character); the ratio of the two is printed at the end
//   OpenDictionary             opening the three dictionaries (and closing them again), with the
//                              process's resident memory after opening; without a readings file
//                              of the user's
//   OpenDictionary/OwnReadings the same with a readings file of 1,000 words, which the library
//                              reads when it opens
//   Sentences/PinyinTagger/OwnReadings
//                              the sentences tagged with those 1,000 words
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <unistd.h>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Corpus.h"
#include "Utf16.h"

namespace {

struct Abi {
    int (*load)(void*);
    int (*open)(const char16_t*, const char16_t*, const char16_t*);
    int (*close)();
    int (*get)(void**);
    int (*tag)(void*, const char16_t*, char16_t**, int32_t*);
    int (*release)(void*);
};

template <class Fn>
void bind(void* handle, const char* name, Fn& fn) {
    fn = reinterpret_cast<Fn>(::dlsym(handle, name));
    if (fn == nullptr) {
        std::fprintf(stderr, "pinyin-speed: no %s\n", name);
        std::exit(1);
    }
}

Abi loadAbi(const std::string& path) {
    void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        std::fprintf(stderr, "pinyin-speed: %s\n", ::dlerror());
        std::exit(1);
    }
    Abi abi{};
    bind(handle, "LoadPinYinLibrary", abi.load);
    bind(handle, "OpenDictionary", abi.open);
    bind(handle, "CloseDictionary", abi.close);
    bind(handle, "GetPinyinObject", abi.get);
    bind(handle, "PinyinTagSen", abi.tag);
    bind(handle, "ReleasePinyinObject", abi.release);
    return abi;
}

std::vector<std::u16string> sentences;
size_t hanCharacters = 0;
std::u16string charsPath, wordsPath, rulesPath;
// A readings file of the user's that does not exist, and one of 1,000 words.
std::string noReadingsPath, ownReadingsPath;
constexpr size_t kOwnWords = 1000;

double residentMegabytes() {
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

// The readings file the library finds when it opens the dictionaries.
void useReadingsFile(const std::string& path) {
    ::setenv("ZPHONETIC_READINGS_FILE", path.c_str(), 1);
    ::unsetenv("ZPHONETIC_TONES");
}

// The readings of `text` as the library answers them, one per unit ("" where none).
std::vector<std::u16string> readingsOf(const Abi& abi, void* tagger, const std::u16string& text) {
    char16_t* answer = nullptr;
    int32_t length = 0;
    std::vector<std::u16string> out;
    if (abi.tag(tagger, text.c_str(), &answer, &length) != 0) return out;
    const std::u16string a(answer, static_cast<size_t>(length));
    delete[] answer;
    // Unit, "/", reading: a reading is lower-case Latin letters with marks, never a Han unit.
    for (size_t p = 0; p + 1 < a.size();) {
        size_t end = p + 2;
        while (end < a.size() && a[end] < 0x2E80) ++end;
        out.push_back(a.substr(p + 2, end - p - 2));
        p = end;
    }
    return out;
}

// Writes kOwnWords words of two to four characters from the corpus, each with the readings the
// library gives it, and first 谁 read shéi (the library reads it shuí), as a teacher's file would
// hold them.
bool writeOwnReadings(const Abi& abi, const std::string& path) {
    useReadingsFile(noReadingsPath);
    if (abi.open(charsPath.c_str(), wordsPath.c_str(), rulesPath.c_str()) != 0) return false;
    void* tagger = nullptr;
    abi.get(&tagger);
    std::ofstream out(path, std::ios::trunc);
    out << "# " << kOwnWords << " words for the benchmark\n谁 shéi\n";
    std::set<std::u16string> taken{u"谁"};
    for (size_t i = 0; taken.size() < kOwnWords && i < sentences.size(); ++i) {
        const std::u16string& s = sentences[i];
        const size_t length = 2 + i % 3;
        if (s.size() < length + 4 || !taken.insert(s.substr(3, length)).second) continue;
        const std::u16string word = s.substr(3, length);
        const std::vector<std::u16string> readings = readingsOf(abi, tagger, word);
        if (readings.size() != word.size()) return false;
        std::u16string line = word;
        for (const std::u16string& r : readings) line += u" " + r;
        out << zphonetic::tagger::toUtf8(line) << "\n";
    }
    abi.release(tagger);
    abi.close();
    return taken.size() == kOwnWords;
}

void tagSentences(benchmark::State& state, const Abi* abi, const std::string* readingsFile) {
    useReadingsFile(*readingsFile);
    abi->load(nullptr);
    if (abi->open(charsPath.c_str(), wordsPath.c_str(), rulesPath.c_str()) != 0) {
        state.SkipWithError("OpenDictionary failed");
        return;
    }
    void* tagger = nullptr;
    abi->get(&tagger);
    for (auto _ : state) {
        for (const std::u16string& s : sentences) {
            char16_t* answer = nullptr;
            int32_t length = 0;
            abi->tag(tagger, s.c_str(), &answer, &length);
            benchmark::DoNotOptimize(answer);
            delete[] answer;
        }
    }
    abi->release(tagger);
    abi->close();
    state.counters["chars_per_second"] = benchmark::Counter(
        static_cast<double>(hanCharacters) * state.iterations(), benchmark::Counter::kIsRate);
}

void openDictionary(benchmark::State& state, const Abi* abi, const std::string* readingsFile) {
    useReadingsFile(*readingsFile);
    // The file is read: 谁 comes out as it says.
    if (abi->open(charsPath.c_str(), wordsPath.c_str(), rulesPath.c_str()) == 0) {
        void* tagger = nullptr;
        abi->get(&tagger);
        const bool own = readingsOf(*abi, tagger, u"谁来").front() == u"shéi";
        abi->release(tagger);
        abi->close();
        if (own != (readingsFile == &ownReadingsPath)) {
            state.SkipWithError("the readings file was not taken as it should be");
            return;
        }
    }
    double resident = 0;
    for (auto _ : state) {
        if (abi->open(charsPath.c_str(), wordsPath.c_str(), rulesPath.c_str()) != 0) {
            state.SkipWithError("OpenDictionary failed");
            return;
        }
        state.PauseTiming();
        resident = residentMegabytes();
        abi->close();
        state.ResumeTiming();
    }
    state.counters["rss_mb_after_open"] = resident;
}

// Prints the ratio of the two sentence benchmarks after the usual report.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const auto it = run.counters.find("chars_per_second");
            if (it != run.counters.end()) rates_[run.benchmark_name()] = it->second;
        }
    }
    void printRatio() const {
        double ours = 0, reference = 0;
        for (const auto& [name, rate] : rates_) {
            const bool own = name.find("OwnReadings") != std::string::npos;
            if (name.find("Sentences/PinyinTagger") == 0 && !own) ours = rate;
            if (name.find("Sentences/PinyinReference") == 0) reference = rate;
        }
        if (ours > 0 && reference > 0) {
            std::printf("PinyinTagger: %.2f M chars/s, reference: %.2f M chars/s, ratio %.3f\n",
                        ours / 1e6, reference / 1e6, ours / reference);
        }
    }

private:
    std::map<std::string, double> rates_;
};

std::string programDir() {
    char buffer[4096];
    const ssize_t n = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (n <= 0) return ".";
    const std::string path(buffer, static_cast<size_t>(n));
    return path.substr(0, path.rfind('/'));
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::string corpus = ZPHONETIC_CPP_CORPUS_DIR;
    std::string dictDir = programDir() + "/../share/zphonetic/dict";
    std::string tagger = programDir() + "/../lib/zphonetic/libPinyinTagger.so";
    std::string reference = programDir() + "/../lib/libPinyinReference.so";
    std::string keptReadings;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string arg = argv[i];
        if (arg == "--corpus")
            corpus = argv[i + 1];
        else if (arg == "--dict-dir")
            dictDir = argv[i + 1];
        else if (arg == "--library")
            tagger = argv[i + 1];
        else if (arg == "--reference")
            reference = argv[i + 1];
        else if (arg == "--write-readings")
            keptReadings = argv[i + 1];
        else {
            std::fprintf(stderr,
                         "usage: pinyin-speed [benchmark flags] [--corpus DIR] "
                         "[--dict-dir DIR] [--library FILE] [--reference FILE]\n"
                         "       pinyin-speed [--corpus DIR] [--dict-dir DIR] [--library FILE] "
                         "--write-readings FILE\n"
                         "(the second writes the readings file of 1,000 words the benchmarks "
                         "use, and runs none)\n");
            return 2;
        }
    }
    std::vector<LabelledSentence> labelled;
    std::string error;
    if (!readCorpus(corpus, labelled, error)) {
        std::printf("pinyin-speed: %s; skipping\n", error.c_str());
        return 77;
    }
    for (LabelledSentence& s : labelled) {
        hanCharacters += s.text.size();
        sentences.push_back(std::move(s.text));
    }
    const std::u16string dir = zphonetic::tagger::toUtf16(dictDir + "/");
    charsPath = dir + u"Pinyin.dic";
    wordsPath = dir + u"firrule.dic";
    rulesPath = dir + u"secrule.dic";
    static const Abi ours = loadAbi(tagger);
    static const Abi yardstick = loadAbi(reference);
    std::printf("corpus: %zu sentences, %zu Han characters\n", sentences.size(), hanCharacters);
    char directory[] = "/tmp/pinyin-speed-XXXXXX";
    if (::mkdtemp(directory) == nullptr) return 1;
    noReadingsPath = std::string(directory) + "/none.txt";
    ownReadingsPath =
        keptReadings.empty() ? std::string(directory) + "/readings.txt" : keptReadings;
    if (!writeOwnReadings(ours, ownReadingsPath)) {
        std::fprintf(stderr, "pinyin-speed: could not write %s\n", ownReadingsPath.c_str());
        return 1;
    }
    if (!keptReadings.empty()) {
        ::rmdir(directory);
        return 0;
    }

    benchmark::RegisterBenchmark("Sentences/PinyinTagger", tagSentences, &ours, &noReadingsPath)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Sentences/PinyinReference", tagSentences, &yardstick,
                                 &noReadingsPath)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Sentences/PinyinTagger/OwnReadings", tagSentences, &ours,
                                 &ownReadingsPath)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("OpenDictionary", openDictionary, &ours, &noReadingsPath)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("OpenDictionary/OwnReadings", openDictionary, &ours,
                                 &ownReadingsPath)
        ->Unit(benchmark::kMillisecond);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatio();
    benchmark::Shutdown();
    std::remove(ownReadingsPath.c_str());
    ::rmdir(directory);
    return 0;
}
