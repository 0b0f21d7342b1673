#include "cli/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "platform/bundle.h"

namespace velmara::cli {
namespace {

constexpr int kWrongUsage = 2;
constexpr int kMostJobs = 1024;

const char* const kDescription =
    "Velmara removes noise from photographs.\n"
    "Without a command it opens its window, with the first of PHOTO... in it. Where a window is\n"
    "open already, that one shows the photo.";
const char* const kNewWindow = "--new-window";
const char* const kDenoiseFooter =
    R"(Without -o or --output-dir the result is NAME-denoised.EXT beside the photo, in the
photo's own format where it is one of the five, else PNG. An existing file is replaced
only with --force, an input never. A folder stands for the photos in it, but for those
that are results of others.
--name-pattern names results: {name} is the photo's name, {number} its place among the
photos, {folder} the name of its folder; an extension is added.
With --deep, --auto takes the noise as measured, and a level scales it: 5 as measured, 10
twice, 1 a fifth.
--template, --search and --sigma go together and take the place of --auto and --level.
With --bare as well the samples go to the filter as they are decoded, whatever their
number, and come back neither turned nor with metadata: what comparing engines needs.
--residual shows what was taken from the photo, as large and upright as the result: each
colour is 128 + 8 x (photo - result), kept within 0 to 255, so grey is where nothing was
taken, and edges or texture seen in it are detail that went with the noise.
JSON: "path", "result" ("written", "skipped", "failed" or "cancelled"), "reason" of the
last three, "output", "residual" where asked for, "width" and "height" as written, "psnr"
(dB, or "inf") where it was measured, "filter" with "sigma", "template" and "search" (not
with --deep or for photos too small to filter), "deep" with the noise as info prints it,
and "seconds" with "all" and each step's ("load", "measure", "choose", "filter", "turn",
"encode", "write"; some overlap). One object a line, in the order of the photos.
Exit code: 0 all well, 1 some photos failed, 2 wrong usage, 130 interrupted.)";
const char* const kInfoFooter =
    R"(--plot shows the strength that Auto exports with at each noise level, the photo's marked, and
the noise by brightness. A file that is there is not replaced.
JSON: "path", "name", "folder", "bytes", "created", "width", "height" (upright),
"orientation" (1 to 8, of the file), "psnr" (dB, or "inf"), "auto" with "sigma", "template" and
"search" as exporting would use, "filtered" (false for photos too small to filter),
"noise" with "red", "green" and "blue", each with its standard deviation where the
photo is "dark", "middle" and "bright" (levels 64, 128, 192 of 255), and "beyondLevels"
(true where the noise asks for denoise --deep).)";
const char* const kCalibrateFooter =
    R"(JSON: "pixelsPerSecond" (one thread), "width" and "height" of the test picture,
"template", "search" and "sigma".)";

struct Parser {
  CLI::App app{kDescription, "velmara"};
  DenoiseOptions denoise;
  InfoOptions info;
  CalibrateOptions calibrate;
  CLI::App* denoiseCommand = nullptr;
  CLI::App* infoCommand = nullptr;
  CLI::App* formatsCommand = nullptr;
  bool isAuto = false;
  int level = 0;
  FilterParameters parameters;
  std::string format;
  std::string engine = "fast";
  std::string output;
  std::string folder;
  std::string comparison;
  std::string residual;
  std::string plot;
  std::string filesFrom;
  std::string part;
  std::string pattern;
  int jobs = 0;
  bool isForced = false;
  bool skipsExisting = false;

  Parser() {
    app.set_version_flag("--version", "velmara " + mainBundle().CFBundleVersion);
    app.add_flag(kNewWindow)->description("Open PHOTO... in a window of its own");
    app.require_subcommand(1);
    app.failure_message(CLI::FailureMessage::simple);
    addDenoise();
    addOthers();
  }

  void addDenoise() {
    auto* command = denoiseCommand = app.add_subcommand(
        "denoise", "Remove the noise of photos and write the results beside them");
    command->add_option("INPUT", denoise.inputs, "The photos, and folders of photos");
    addPhotoList(*command);
    auto* automatic = command->add_flag(
        "--auto", isAuto, "Choose the strength by the photo's noise (this is the default)");
    auto* levelOption = command->add_option("--level", level, "Choose a strength of 1 to 10")
                            ->check(CLI::Range(1, 10))
                            ->excludes(automatic);
    auto* deepOption =
        command->add_flag("--deep", denoise.isDeep,
                          "For strong noise: slower, with the noise measured by brightness");
    const auto number = [&](const char* name, int& value, const char* text) {
      return command->add_option(name, value, text)->excludes(automatic, levelOption, deepOption);
    };
    auto* templateOption =
        number("--template", parameters.templateWinSize, "Side of the compared patch");
    auto* searchOption = number("--search", parameters.searchWinSize, "Side of the search window");
    auto* sigmaOption = number("--sigma", parameters.sigmaVal, "Strength of the filter")
                            ->needs(templateOption, searchOption);
    templateOption->needs(searchOption, sigmaOption);
    searchOption->needs(templateOption, sigmaOption);
    command
        ->add_flag("--bare", denoise.isBare,
                   "With explicit numbers: filter the decoded file as it is, for comparing engines")
        ->needs(templateOption, searchOption, sigmaOption);
    addOutput(*command);
    command->add_option("--engine", engine, "fast or reference; both give the same pixels")
        ->check(CLI::IsMember({"fast", "reference"}));
    command->footer(kDenoiseFooter);
  }

  void addPhotoList(CLI::App& command) {
    command.add_option("--files-from", filesFrom,
                       "A file with more of them, one a line or each ended by a zero byte; - is "
                       "standard input");
    command.add_flag("-r,--recursive", denoise.isRecursive, "Look into folders of folders");
    command.add_option("--part", part,
                       "K/N: only the Kth of N shares of the photos, for several machines");
    command.add_option("-j,--jobs", jobs, "How many photos are worked on at once")
        ->check(CLI::Range(1, kMostJobs));
  }

  void addOutput(CLI::App& command) {
    auto* outputOption =
        command.add_option("-o,--output", output, "The file to write; - is standard output");
    auto* folderOption =
        command.add_option("--output-dir", folder, "The folder to write into, made if need be")
            ->excludes(outputOption);
    command
        .add_flag("--keep-folders", denoise.naming.keepsFolders,
                  "Lay the folders of the photos out anew in it")
        ->needs(folderOption);
    command
        .add_option("--name-pattern", pattern, "The results' names, {name}-denoised if not given")
        ->excludes(outputOption);
    command.add_option("--format", format, "jpeg, tiff, bmp, gif or png")
        ->check(CLI::IsMember(exportFormatWords()));
    command.add_option("--compare", comparison,
                       "Write a PNG with the photo left and the result right of a line");
    command.add_option("--residual", residual, "Write a PNG of what was taken from the photo");
    auto* forceOption =
        command.add_flag("--force", isForced, "Replace output files that are there already");
    command
        .add_flag("--skip-existing", skipsExisting,
                  "Pass over photos whose output is there already")
        ->excludes(forceOption);
    auto* quietOption = command.add_flag("--quiet", denoise.quiet, "Print nothing but errors");
    auto* detailsOption =
        command.add_flag("--details", denoise.details, "Print five lines a photo instead of one")
            ->excludes(quietOption);
    command.add_flag("--json", denoise.json, "Print one JSON object a line and photo")
        ->excludes(quietOption, detailsOption);
  }

  void addOthers() {
    infoCommand =
        app.add_subcommand("info", "Print size, noise level and automatic parameters of photos");
    infoCommand->add_option("INPUT", info.inputs, "The photos")->required();
    infoCommand->add_option("--plot", plot, "Write an SVG picture of the noise of the one photo");
    infoCommand->add_flag("--json", info.json, "Print one JSON object a line and photo");
    infoCommand->footer(kInfoFooter);
    auto* command =
        app.add_subcommand("calibrate", "Measure how many pixels a second this machine filters");
    command->add_flag("--json", calibrate.json, "Print one JSON object");
    command->footer(kCalibrateFooter);
    formatsCommand =
        app.add_subcommand("formats", "List the picture formats that are read and written here");
  }

  Command wrongUsage(const std::string& reason) const {
    const char* command = infoCommand->parsed() ? "info" : "denoise";
    return PrintAndExit{std::string("velmara ") + command + ": " + reason + "\n", kWrongUsage};
  }

  Command finishDenoise() {
    DenoiseOptions& options = denoise;
    BatchNaming& naming = options.naming;
    const auto given = [&](const char* name) { return denoiseCommand->count(name) > 0; };
    if (given("--level")) options.mode = DenoiseMode::manual(level);
    if (given("--sigma")) options.explicitParameters = parameters;
    if (given("--output")) naming.file = output;
    if (given("--output-dir")) naming.folder = folder;
    if (given("--compare")) options.comparison = comparison;
    if (given("--residual")) options.residual = residual;
    if (given("--format")) naming.format = exportFormatForExtension(format);
    if (given("--files-from")) options.filesFrom = filesFrom;
    if (given("--jobs")) options.jobs = jobs;
    if (isForced) naming.existing = BatchNaming::Existing::replace;
    if (skipsExisting) naming.existing = BatchNaming::Existing::skip;
    options.referenceEngine = engine == "reference";
    if (given("--part") && !takePart()) {
      return wrongUsage("--part takes K/N with K from 1 to N, as in 2/8");
    }
    if (given("--name-pattern")) {
      const auto parsed = NamePattern::parse(pattern);
      if (!parsed) return wrongUsage(parsed.error());
      naming.pattern = *parsed;
    }
    if (options.inputs.empty() && !options.filesFrom) return wrongUsage("INPUT is required");

    std::error_code failure;
    const bool isOnePhoto = options.inputs.size() == 1 && !options.filesFrom &&
                            !std::filesystem::is_directory(options.inputs.front(), failure);
    if (!isOnePhoto && (naming.file || options.comparison || options.residual)) {
      return wrongUsage(
          "-o, --compare and --residual take one photo; use --output-dir for several");
    }
    const bool needsExtension = naming.file && *naming.file != "-" && !naming.format;
    if (needsExtension && !formatForPath(*naming.file)) {
      return wrongUsage("no format goes by the name of " + *naming.file + "; say --format");
    }
    return options;
  }

  // Whether --part is K/N.
  bool takePart() {
    std::istringstream words(part);
    std::size_t number = 0, parts = 0;
    char between = 0;
    words >> number >> between >> parts;
    const bool isWell = words && words.peek() == std::istringstream::traits_type::eof() &&
                        between == '/' && part.find('-') == std::string::npos && number >= 1 &&
                        number <= parts;
    if (isWell) denoise.part = std::pair(number, parts);
    return isWell;
  }

  Command finishInfo() {
    if (infoCommand->count("--plot") == 0) return info;
    if (info.inputs.size() != 1) return wrongUsage("--plot takes one photo");
    if (!plot.ends_with(".svg")) return wrongUsage("the name of a plot ends in .svg");
    info.plot = plot;
    return info;
  }

  Command finish() {
    if (denoiseCommand->parsed()) return finishDenoise();
    if (formatsCommand->parsed()) return FormatsOptions{};
    return infoCommand->parsed() ? finishInfo() : calibrate;
  }
};

}  // namespace

Command parseCommandLine(int argc, const char* const* argv) {
  Parser parser;
  try {
    parser.app.parse(argc, argv);
    return parser.finish();
  } catch (const CLI::ParseError& reason) {
    std::ostringstream text;
    const int code = parser.app.exit(reason, text, text);
    return PrintAndExit{text.str(), code == 0 ? 0 : kWrongUsage};
  }
}

std::optional<WindowStart> windowStart(int argc, const char* const* argv) {
  WindowStart start;
  std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  start.isNewWindow = std::erase(words, kNewWindow) > 0;
  if (words.empty()) return start;
  const std::string& word = words.front();
  const Parser parser;
  const bool isCommand = std::ranges::any_of(
      parser.app.get_subcommands({}), [&](const auto* one) { return one->get_name() == word; });
  std::error_code failure;
  if (isCommand || word.starts_with('-') || !std::filesystem::exists(word, failure)) return {};
  start.photo = std::filesystem::absolute(word, failure).string();
  return start;
}

}  // namespace velmara::cli
