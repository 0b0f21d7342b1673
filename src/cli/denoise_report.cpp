#include "cli/denoise_report.h"

#include <QJsonObject>

#include "base/fixed_text.h"
#include "cli/commands.h"
#include "cli/json_lines.h"

namespace velmara::cli {
namespace {

using End = BatchOutcome::End;

std::string filterText(const PhotoJobResult& job, const DenoiseOptions& options) {
  if (options.isDeep && job.deepNoise) return "deep, noise " + noiseText(*job.deepNoise);
  if (!job.parameters) return "too small to filter, kept as it is";
  const FilterParameters& p = *job.parameters;
  return "sigma " + std::to_string(p.sigmaVal) + ", template " + std::to_string(p.templateWinSize) +
         ", search " + std::to_string(p.searchWinSize);
}

std::string shownPath(const PhotoOutput& output) {
  return output.path.empty() ? "-" : output.path;
}

bool isMeasured(const PhotoJobResult& job, const DenoiseOptions& options) {
  return job.parameters && !options.explicitParameters;
}

QJsonObject timesOf(const BatchOutcome& outcome) {
  const char* const names[kPhotoSteps] = {"load",   "calibrate", "measure", "choose",
                                          "filter", "turn",      "encode",  "write"};
  QJsonObject times{{"all", outcome.seconds}};
  for (int step = 0; step < kPhotoSteps; ++step) {
    if (outcome.job.seconds[step] > 0.0) times[names[step]] = outcome.job.seconds[step];
  }
  return times;
}

const char* wordFor(End end) {
  switch (end) {
    case End::written:
      return "written";
    case End::skipped:
      return "skipped";
    case End::cancelled:
      return "cancelled";
    case End::failed:
      break;
  }
  return "failed";
}

}  // namespace

std::string denoiseText(const std::string& photo, const BatchOutcome& outcome,
                        const DenoiseOptions& options) {
  if (outcome.end == End::skipped) return photo + ": skipped, " + outcome.reason + "\n";
  const PhotoJobResult& job = outcome.job;
  const std::string target = shownPath(outcome.output);
  const std::string size =
      std::to_string(job.writtenWidth) + " x " + std::to_string(job.writtenHeight) + " px";
  const std::string filter = filterText(job, options) + ", " + fixedText(outcome.seconds, 2) + " s";
  const bool hasNoise = isMeasured(job, options);
  const std::string noise = hasNoise ? noiseText(double{job.psnrOfRealImage}) : "not measured";
  if (!options.details) {
    return photo + " -> " + target + ": " + size + ", " + (hasNoise ? noise + ", " : "") + filter +
           "\n";
  }
  return "Photo:      " + photo + "\n" +   //
         "Noise:      " + noise + "\n" +   //
         "Filter:     " + filter + "\n" +  //
         "Result:     " + target + ", " + size + "\n" +
         "Comparison: " + options.comparison.value_or("none (--compare FILE.png)") + "\n" +
         (options.residual ? "Residual:   " + *options.residual + "\n" : "");
}

std::string denoiseJson(const std::string& photo, const BatchOutcome& outcome,
                        const DenoiseOptions& options) {
  const PhotoJobResult& job = outcome.job;
  QJsonObject object{
      {"path", jsonText(photo)}, {"result", wordFor(outcome.end)}, {"seconds", timesOf(outcome)}};
  if (!outcome.reason.empty()) object["reason"] = jsonText(outcome.reason);
  if (outcome.end == End::written || outcome.end == End::skipped) {
    object["output"] = jsonText(shownPath(outcome.output));
  }
  if (outcome.end != End::written) return jsonLine(object);
  if (options.residual) object["residual"] = jsonText(*options.residual);
  object["width"] = job.writtenWidth;
  object["height"] = job.writtenHeight;
  if (isMeasured(job, options)) object["psnr"] = jsonOfPsnr(double{job.psnrOfRealImage});
  if (job.parameters) object["filter"] = jsonOf(*job.parameters);
  if (options.isDeep && job.deepNoise) object["deep"] = jsonOf(*job.deepNoise);
  return jsonLine(object);
}

}  // namespace velmara::cli
