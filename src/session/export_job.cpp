#include "session/export_job.h"

#include <QCoreApplication>
#include <QFile>

#include <exception>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/atomic_file.h"
#include "session/whole_photo.h"

namespace velmara {
namespace {

// For people to read: bytes that are no text in the system's encoding are shown as well as can be.
QString shown(const std::string& path) {
  return QFile::decodeName(path.c_str());
}

std::string nameOf(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

Result<Image> writeResult(const ExportJob& job) {
  if (!job.format) return Error{"cannot write " + job.pathToExportImage + ": unknown format"};
  if (!job.filteredImage.isValid()) {
    return Error{"cannot write " + job.pathToExportImage + ": there is no picture"};
  }
  auto upright = uprightAtFullSize(job.photo, job.filteredImage);
  if (!upright) return Error{"cannot write " + job.pathToExportImage + ": " + upright.error()};
  const auto bytes = encodeExport(job.photo, *upright, *job.format);
  if (!bytes) return Error{"cannot write " + job.pathToExportImage + ": " + bytes.error()};
  // The photo's file has been read by now, should it be the one to be replaced.
  if (Status written = replaceFile(job.pathToExportImage, *bytes); !written) {
    return Error{written.error()};
  }
  return upright;
}

ExportOutcome writeAndTakeStock(const ExportJob& job) {
  const bool isOwnFile = isPhotosOwnFile(job.photo, job.pathToExportImage);
  auto upright = writeResult(job);
  ExportOutcome outcome{Done{}, job.photo, job.filteredImage, false};
  if (!upright) {
    outcome.status = Error{upright.error()};
  } else if (isOwnFile) {
    outcome.photo = PhotoFile::initWithFileUrl(job.photo.filePath);
    outcome.filteredImage = std::move(upright).value();
    outcome.hasReplacedPhoto = true;
  }
  return outcome;
}

}  // namespace

ExportOutcome runExportJob(const ExportJob& job) {
  try {
    return writeAndTakeStock(job);
  } catch (const std::exception&) {
    const std::string message = "cannot write " + job.pathToExportImage + ": not enough memory";
    return {Error{message}, job.photo, job.filteredImage, false};
  }
}

void runExportJobInBackground(ExportJob job, TaskQueue& worker, TaskQueue& mainQueue,
                              std::function<void(const ExportOutcome&)> completion) {
  worker.async([job = std::move(job), &mainQueue, completion = std::move(completion)] {
    mainQueue.async([completion, outcome = runExportJob(job)] { completion(outcome); });
  });
}

Alert replaceOriginalQuestion(const PhotoFile& photo) {
  const auto text = [](const char* source) {
    return QCoreApplication::translate("Export", source);
  };
  Alert alert;
  alert.messageText = text("Replace the original “%1”?").arg(shown(photo.fileName)).toStdString();
  alert.informativeText =
      text(
          "This is the photo you opened. Its file will hold the denoised photo instead, and the "
          "original cannot be brought back.")
          .toStdString();
  alert.buttons = {text("Replace").toStdString(), text("Cancel").toStdString()};
  return alert;
}

Alert exportFailedAlert(const std::string& pathToExportImage, const std::string& reason) {
  Alert alert;
  alert.messageText = QCoreApplication::translate("Export", "“%1” was not saved.")
                          .arg(shown(nameOf(pathToExportImage)))
                          .toStdString();
  alert.informativeText = shown(reason).toStdString();
  alert.buttons = {QCoreApplication::translate("Export", "OK").toStdString()};
  return alert;
}

}  // namespace velmara
