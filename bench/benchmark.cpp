// tessaly-benchmark: loads and saves generated ECU documents of several sizes and prints, for
// each, the library's figures beside those of a bare pugixml parse and save of the same file
// and of `xmllint --noout`, with the ratios between them. Two more references tell what other
// designs of the import would start from: the bare parse followed by one walk over the DOM that
// reads every attribute, and (when libxml2's headers are installed) libxml2's streaming SAX2
// parse with nothing built.
//
// Every measured phase runs in a child process of its own (this program started again with
// --phase), so that the peak resident size the parent reads for it with wait4 belongs to that
// phase alone. Times are taken inside the child around the phase only, both as wall-clock time
// and as processor time (user + system) of the process; xmllint is timed from outside.
#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <pugixml.hpp>
#ifdef TESSALY_BENCH_LIBXML2
#include <libxml/parser.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "bench_queries.hpp"
#include "ecu_generator.hpp"
#include "tessaly/tessaly.hpp"

namespace {

using Clock = std::chrono::steady_clock;
using Figures = std::map<std::string, double>;

constexpr double kMB = 1000.0 * 1000.0;

// --- Inside a child: one phase ---------------------------------------------------------------

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Wall and processor time of `step`, stored as NAME_wall and NAME_cpu.
void Time(Figures& out, const std::string& name, const std::function<void()>& step) {
  const double cpu0 = CpuSeconds();
  const Clock::time_point wall0 = Clock::now();
  step();
  out[name + "_wall"] = std::chrono::duration<double>(Clock::now() - wall0).count();
  out[name + "_cpu"] = CpuSeconds() - cpu0;
}

// Bytes the allocator has handed out and not taken back.
double HeapInUse() {
  struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

// Current resident size, after giving free heap memory back to the system.
double ResidentBytes() {
  malloc_trim(0);
  std::ifstream statm("/proc/self/statm");
  double size = 0, resident = 0;
  statm >> size >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// The options the library parses documents with, and the format it writes them with.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_comments |
                                   pugi::parse_pi | pugi::parse_declaration | pugi::parse_doctype;
constexpr unsigned kSaveFormat = pugi::format_raw;

void Fail(const std::string& what) {
  std::cerr << "tessaly-benchmark: " << what << "\n";
  std::exit(1);
}

// Reads every element's attributes, names and values, once, and nothing else: the least work a
// reader of a whole DOM does on top of the parse, since each value has to be looked at.
class AttributeWalker : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& node) override {
    for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute())
      checksum_ += static_cast<unsigned char>(a.name()[0]) + std::strlen(a.value());
    return true;
  }
  std::size_t checksum() const { return checksum_; }

 private:
  std::size_t checksum_ = 0;
};

#ifdef TESSALY_BENCH_LIBXML2
// libxml2's streaming parse of `file`, with handlers that only count what they are given.
void SaxParse(const std::string& file) {
  struct Counts {
    std::size_t elements = 0, attributes = 0, characters = 0;
  } counts;
  xmlSAXHandler handler{};
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**,
                              int attributes, int, const xmlChar**) {
    Counts* c = static_cast<Counts*>(user);
    ++c->elements;
    c->attributes += static_cast<std::size_t>(attributes);
  };
  handler.characters = [](void* user, const xmlChar*, int length) {
    static_cast<Counts*>(user)->characters += static_cast<std::size_t>(length);
  };
  if (xmlSAXUserParseFile(&handler, &counts, file.c_str()) != 0 || counts.elements == 0)
    Fail("libxml2 cannot parse " + file);
}
#endif

Figures RunPhase(const std::string& phase, const std::string& file, const std::string& output) {
  Figures out;
  if (phase == "baseline") return out;
  if (phase == "parse") {
    pugi::xml_document doc;
    Time(out, "parse", [&] {
      if (!doc.load_file(file.c_str(), kParseOptions, pugi::encoding_utf8)) Fail("pugixml cannot parse " + file);
    });
    return out;
  }
  if (phase == "walk") {
    pugi::xml_document doc;
    if (!doc.load_file(file.c_str(), kParseOptions, pugi::encoding_utf8)) Fail("pugixml cannot parse " + file);
    AttributeWalker walker;
    Time(out, "walk", [&] { doc.traverse(walker); });
    if (walker.checksum() == 0) Fail("no attribute read in " + file);
    return out;
  }
#ifdef TESSALY_BENCH_LIBXML2
  if (phase == "sax") {
    Time(out, "sax", [&] { SaxParse(file); });
    return out;
  }
#endif
  if (phase == "save") {
    pugi::xml_document doc;
    if (!doc.load_file(file.c_str(), kParseOptions, pugi::encoding_utf8)) Fail("pugixml cannot parse " + file);
    Time(out, "save", [&] {
      if (!doc.save_file(output.c_str(), "", kSaveFormat, pugi::encoding_utf8)) Fail("pugixml cannot write " + output);
    });
    return out;
  }
  tessaly::TessalyLibXml facade;
  std::uint64_t warnings = 0;
  facade.set_WarningInfo([&](const std::string&, const std::string&) { ++warnings; });
  const double heap0 = HeapInUse();
  const double resident0 = ResidentBytes();
  if (phase == "import") {
    Time(out, "import", [&] { facade.ImportUceFromXml(file); });
    out["model_heap"] = HeapInUse() - heap0;
    out["model_rss"] = ResidentBytes() - resident0;
    out["warnings"] = static_cast<double>(warnings);
    return out;
  }
  facade.ImportUceFromXml(file);
  if (phase == "export") {
    Time(out, "export", [&] { facade.ExportUceToXml(output); });
    if (facade.LastSaveError()) Fail("export failed: " + facade.LastSaveError()->Description());
    return out;
  }
  if (phase == "queries") {
    for (const tessaly::bench::QueryTiming& timing : tessaly::bench::TimeQueries(*facade.ActiveTarget())) {
      out["q:" + timing.name] = timing.cpu;
      out["w:" + timing.name] = timing.seconds;
    }
    return out;
  }
  Fail("unknown phase " + phase);
  return out;
}

int PhaseMain(int argc, char** argv) {
  if (argc < 4) Fail("--phase NAME FILE [OUTPUT]");
  Figures figures = RunPhase(argv[2], argv[3], argc > 4 ? argv[4] : "");
  for (const auto& [name, value] : figures) std::printf("%s=%.9g\n", name.c_str(), value);
  return 0;
}

// --- In the parent ---------------------------------------------------------------------------

struct ChildResult {
  Figures figures;
  double peakBytes = 0;  // the child's peak resident size
  double wall = 0;       // wall time of the whole child, from outside
  double cpu = 0;        // processor time of the whole child
};

// Runs `args` as a child process, reading its standard output; the child's peak resident size
// and processor time come from wait4.
ChildResult RunChild(const std::vector<std::string>& args, bool quiet) {
  int pipeFds[2];
  if (pipe(pipeFds) != 0) Fail("pipe failed");
  const Clock::time_point start = Clock::now();
  pid_t pid = fork();
  if (pid < 0) Fail("fork failed");
  if (pid == 0) {
    dup2(pipeFds[1], STDOUT_FILENO);
    close(pipeFds[0]);
    close(pipeFds[1]);
    if (quiet) {
      int devnull = open("/dev/null", O_WRONLY);
      dup2(devnull, STDOUT_FILENO);
      dup2(devnull, STDERR_FILENO);
    }
    std::vector<char*> argv;
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  close(pipeFds[1]);
  std::string text;
  char buffer[4096];
  ssize_t n;
  while ((n = read(pipeFds[0], buffer, sizeof buffer)) > 0) text.append(buffer, static_cast<std::size_t>(n));
  close(pipeFds[0]);
  int status = 0;
  rusage usage{};
  wait4(pid, &status, 0, &usage);
  ChildResult result;
  result.wall = std::chrono::duration<double>(Clock::now() - start).count();
  result.cpu = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
               static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  result.peakBytes = static_cast<double>(usage.ru_maxrss) * 1024.0;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) Fail("child failed: " + args[0] + " " + (args.size() > 1 ? args[1] : ""));
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    std::size_t eq = line.find('=');
    if (eq != std::string::npos) result.figures[line.substr(0, eq)] = std::stod(line.substr(eq + 1));
  }
  return result;
}

// The best of `repeat` runs of a phase: the smallest time of each kind and the smallest peak
// (noise from other processes only ever adds).
ChildResult BestOf(int repeat, const std::function<ChildResult()>& run) {
  ChildResult best = run();
  for (int i = 1; i < repeat; ++i) {
    ChildResult next = run();
    best.peakBytes = std::min(best.peakBytes, next.peakBytes);
    best.wall = std::min(best.wall, next.wall);
    best.cpu = std::min(best.cpu, next.cpu);
    for (auto& [name, value] : next.figures)
      if (!name.starts_with("model_") && name != "warnings") best.figures[name] = std::min(best.figures[name], value);
  }
  return best;
}

std::string SelfPath() {
  char path[4096];
  ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
  if (n <= 0) Fail("cannot find this program");
  return std::string(path, static_cast<std::size_t>(n));
}

bool SameFileBytes(const std::string& a, const std::string& b) {
  std::ifstream fa(a, std::ios::binary), fb(b, std::ios::binary);
  std::istreambuf_iterator<char> ea, eb;
  return std::equal(std::istreambuf_iterator<char>(fa), ea, std::istreambuf_iterator<char>(fb), eb);
}

double FileSize(const std::string& path) {
  struct stat st {};
  if (stat(path.c_str(), &st) != 0) Fail("cannot stat " + path);
  return static_cast<double>(st.st_size);
}

std::string LoadAverage() {
  std::ifstream in("/proc/loadavg");
  std::string a, b, c;
  in >> a >> b >> c;
  return a + " " + b + " " + c;
}

// The system's transparent huge pages setting (the bracketed choice of "always [madvise] never"),
// which decides whether the import's file buffer gets the huge pages it asks for.
std::string HugePagesMode() {
  std::ifstream in("/sys/kernel/mm/transparent_hugepage/enabled");
  std::string line;
  std::getline(in, line);
  const std::size_t open = line.find('[');
  const std::size_t close = line.find(']', open);
  if (open == std::string::npos || close == std::string::npos) return "unknown";
  return line.substr(open + 1, close - open - 1);
}

// Everything measured on one document.
struct SizeReport {
  double megabytes = 0;
  double bytes = 0;
  std::size_t blocks = 0;
  double baselinePeak = 0;
  ChildResult parse, walk, sax, save, xmllint, import, exporting, queries;
  bool exportIdentical = false;
  bool haveXmllint = false;
  bool haveSax = false;
};

struct Check {
  std::string what;
  double value;
  double limit;
  bool pass() const { return value <= limit; }
};

void PrintRow(const char* name, double wall, double cpu, double bytes, double peak) {
  std::printf("  %-26s %9.3f %9.3f %10.1f %10.1f %10.1f\n", name, wall, cpu, bytes / kMB / wall, bytes / kMB / cpu,
              peak / kMB);
}

SizeReport Measure(const std::string& self, const std::string& dir, std::uint64_t seed, double megabytes, int repeat) {
  SizeReport r;
  r.megabytes = megabytes;
  const std::string tag = std::to_string(seed) + "-" + std::to_string(static_cast<long long>(megabytes));
  const std::string file = dir + "/ecu-" + tag + "MB.xml";
  const std::string saved = dir + "/ecu-" + tag + "MB.pugixml-save.xml";
  const std::string exported = dir + "/ecu-" + tag + "MB.export.xml";

  std::fprintf(stderr, "[%g MB] generating...\n", megabytes);
  r.blocks = tessaly::bench::BlocksForSize(seed, static_cast<std::size_t>(megabytes * kMB));
  {
    // Generated in a child too, so that this process stays small for the ones that follow.
    RunChild({self, "--generate", std::to_string(seed), std::to_string(r.blocks), file}, false);
  }
  r.bytes = FileSize(file);

  auto phase = [&](const char* name, const std::string& output = "") {
    std::fprintf(stderr, "[%g MB] %s...\n", megabytes, name);
    return BestOf(repeat, [&] { return RunChild({self, "--phase", name, file, output}, false); });
  };
  r.baselinePeak = phase("baseline").peakBytes;
  r.parse = phase("parse");
  r.walk = phase("walk");
#ifdef TESSALY_BENCH_LIBXML2
  r.sax = phase("sax");
  r.haveSax = true;
#endif
  r.save = phase("save", saved);
  r.import = phase("import");
  r.exporting = phase("export", exported);
  r.exportIdentical = SameFileBytes(file, exported);
  r.queries = phase("queries");
  r.haveXmllint = system("command -v xmllint >/dev/null 2>&1") == 0;
  if (r.haveXmllint) {
    std::fprintf(stderr, "[%g MB] xmllint --noout...\n", megabytes);
    r.xmllint = BestOf(repeat, [&] { return RunChild({"xmllint", "--noout", "--huge", file}, false); });
  }
  std::remove(saved.c_str());
  std::remove(exported.c_str());
  return r;
}

void Print(const SizeReport& r, std::vector<Check>& checks, bool targets) {
  const Figures& p = r.parse.figures;
  const Figures& s = r.save.figures;
  const Figures& i = r.import.figures;
  const Figures& e = r.exporting.figures;
  std::printf("\nDocument of %.0f MB: %.0f bytes, %zu blocks\n", r.megabytes, r.bytes, r.blocks);
  std::printf("  %-26s %9s %9s %10s %10s %10s\n", "", "wall s", "cpu s", "MB/s wall", "MB/s cpu", "peak MB");
  PrintRow("bare pugixml parse", p.at("parse_wall"), p.at("parse_cpu"), r.bytes, r.parse.peakBytes);
  PrintRow("import (file to model)", i.at("import_wall"), i.at("import_cpu"), r.bytes, r.import.peakBytes);
  if (r.haveXmllint) PrintRow("xmllint --noout (process)", r.xmllint.wall, r.xmllint.cpu, r.bytes, r.xmllint.peakBytes);
  PrintRow("bare pugixml save", s.at("save_wall"), s.at("save_cpu"), r.bytes, r.save.peakBytes);
  PrintRow("export (model to file)", e.at("export_wall"), e.at("export_cpu"), r.bytes, r.exporting.peakBytes);
  std::printf("  empty child process peak: %.1f MB\n", r.baselinePeak / kMB);
  std::printf("  model after import, DOM released: %.1f MB allocated (malloc statistics), %.1f MB resident "
              "(RSS difference); %.2f times the file\n",
              i.at("model_heap") / kMB, i.at("model_rss") / kMB, i.at("model_heap") / r.bytes);
  std::printf("  export gives back the file byte for byte: %s; warnings during import: %.0f\n",
              r.exportIdentical ? "yes" : "NO", i.at("warnings"));

  std::printf("  ratios (wall / cpu):\n");
  auto ratio = [&](const char* name, double wallA, double wallB, double cpuA, double cpuB, double limit) {
    std::printf("    %-40s %7.2f / %5.2f   target <= %.2f\n", name, wallA / wallB, cpuA / cpuB, limit);
    if (targets) checks.push_back({std::string(name) + " (cpu)", cpuA / cpuB, limit});
  };
  ratio("import / bare parse", i.at("import_wall"), p.at("parse_wall"), i.at("import_cpu"), p.at("parse_cpu"), 1.5);
  if (r.haveXmllint)
    ratio("import / xmllint --noout", i.at("import_wall"), r.xmllint.wall, i.at("import_cpu"), r.xmllint.cpu, 0.5);
  ratio("export / bare save", e.at("export_wall"), s.at("save_wall"), e.at("export_cpu"), s.at("save_cpu"), 1.5);
  std::printf("  references for other designs of the import (cpu, not targets):\n");
  const double walked = p.at("parse_cpu") + r.walk.figures.at("walk_cpu");
  std::printf("    %-48s %6.3f s = %5.2f x bare parse\n", "bare parse + one walk reading every attribute", walked,
              walked / p.at("parse_cpu"));
  if (r.haveSax)
    std::printf("    %-48s %6.3f s = %5.2f x bare parse\n", "libxml2 SAX2 parse, nothing built", r.sax.figures.at("sax_cpu"),
                r.sax.figures.at("sax_cpu") / p.at("parse_cpu"));
  std::printf("  memory ratios:\n");
  auto memory = [&](const char* name, double value, double limit) {
    std::printf("    %-40s %7.2f           target <= %.2f\n", name, value, limit);
    if (targets) checks.push_back({name, value, limit});
  };
  memory("import peak / bare parse peak", r.import.peakBytes / r.parse.peakBytes, 1.3);
  memory("model after import / file", i.at("model_heap") / r.bytes, 2.0);
  std::printf("    %-40s %7.2f\n", "import peak / file", r.import.peakBytes / r.bytes);
  std::printf("    %-40s %7.2f\n", "bare parse peak / file", r.parse.peakBytes / r.bytes);
  if (r.haveXmllint) std::printf("    %-40s %7.2f\n", "xmllint peak / file", r.xmllint.peakBytes / r.bytes);

  std::printf("  cross-reference queries and edits:        %12s %12s\n", "cpu ms", "wall ms");
  for (const auto& [name, value] : r.queries.figures) {
    if (!name.starts_with("q:")) continue;
    const std::string op = name.substr(2);
    std::printf("    %-44s %9.3f %12.3f\n", op.c_str(), value * 1000.0, r.queries.figures.at("w:" + op) * 1000.0);
    if (targets) checks.push_back({op + " (cpu ms)", value * 1000.0, 50.0});
  }
}

void PrintGrowth(const SizeReport& a, const SizeReport& b, std::vector<Check>& checks) {
  std::printf("\nGrowth from %.0f MB to %.0f MB (file grows %.2f times; target: no figure more than 11 times)\n",
              a.megabytes, b.megabytes, b.bytes / a.bytes);
  auto grow = [&](const std::string& name, double from, double to) {
    std::printf("  %-44s %7.2f\n", name.c_str(), to / from);
    checks.push_back({"growth of " + name, to / from, 11.0});
  };
  grow("import cpu", a.import.figures.at("import_cpu"), b.import.figures.at("import_cpu"));
  grow("import wall", a.import.figures.at("import_wall"), b.import.figures.at("import_wall"));
  grow("export cpu", a.exporting.figures.at("export_cpu"), b.exporting.figures.at("export_cpu"));
  grow("export wall", a.exporting.figures.at("export_wall"), b.exporting.figures.at("export_wall"));
  grow("import peak memory", a.import.peakBytes, b.import.peakBytes);
  grow("model memory", a.import.figures.at("model_heap"), b.import.figures.at("model_heap"));
  // Queries taking a few microseconds on the small document are ruled by timer resolution, so
  // their growth is taken from 0.1 ms up (processor time).
  for (const auto& [name, value] : b.queries.figures) {
    if (!name.starts_with("q:") || !a.queries.figures.count(name)) continue;
    grow(name.substr(2), std::max(a.queries.figures.at(name), 1e-4), std::max(value, 1e-4));
  }
}

int Usage() {
  std::cerr << "usage: tessaly-benchmark [--sizes MB,MB,...] [--seed N] [--repeat N] [--dir DIR]\n"
               "  --sizes   document sizes in megabytes (10^6 bytes); default 1,10,100\n"
               "  --seed    generator seed; default 42\n"
               "  --repeat  runs of each phase, the best one kept; default 5\n"
               "  --dir     where the documents are written; default the system's temporary directory\n";
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--phase") == 0) return PhaseMain(argc, argv);
  if (argc == 5 && std::strcmp(argv[1], "--generate") == 0) {
    const std::string text = tessaly::bench::GenerateEcuDocument(std::stoull(argv[2]), tessaly::bench::EcuShape{std::stoull(argv[3])});
    std::ofstream(argv[4], std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
    return 0;
  }

  std::vector<double> sizes = {1, 10, 100};
  std::uint64_t seed = 42;
  int repeat = 5;
  std::string dir = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp";
  for (int a = 1; a < argc; ++a) {
    std::string arg = argv[a];
    if (a + 1 >= argc) return Usage();
    std::string value = argv[++a];
    if (arg == "--sizes") {
      sizes.clear();
      std::istringstream list(value);
      std::string item;
      while (std::getline(list, item, ',')) sizes.push_back(std::stod(item));
    } else if (arg == "--seed") {
      seed = std::stoull(value);
    } else if (arg == "--repeat") {
      repeat = std::max(1, std::stoi(value));
    } else if (arg == "--dir") {
      dir = value;
    } else {
      return Usage();
    }
  }

  const std::string self = SelfPath();
  std::printf("tessaly-benchmark: seed %llu, best of %d runs per phase, load average at start %s, %ld processors, "
              "transparent huge pages: %s\n",
              static_cast<unsigned long long>(seed), repeat, LoadAverage().c_str(), sysconf(_SC_NPROCESSORS_ONLN),
              HugePagesMode().c_str());
  std::vector<SizeReport> reports;
  for (double mb : sizes) reports.push_back(Measure(self, dir, seed, mb, repeat));
  std::vector<Check> checks;
  const double largest = *std::max_element(sizes.begin(), sizes.end());
  for (const SizeReport& r : reports) Print(r, checks, r.megabytes == largest);
  for (std::size_t k = 0; k + 1 < reports.size(); ++k)
    if (reports[k + 1].megabytes == largest && reports[k].megabytes * 10 == largest) PrintGrowth(reports[k], reports[k + 1], checks);

  std::printf("\nTargets (on the %.0f MB document; times compared by processor time)\n", largest);
  int failed = 0;
  for (const Check& c : checks) {
    std::printf("  %-4s %-52s %9.3f <= %g\n", c.pass() ? "ok" : "MISS", c.what.c_str(), c.value, c.limit);
    if (!c.pass()) ++failed;
  }
  std::printf("load average at end %s\n", LoadAverage().c_str());
  std::printf("%d of %zu targets missed\n", failed, checks.size());
  return failed == 0 ? 0 : 1;
}
