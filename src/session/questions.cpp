#include "session/questions.h"

#include <QCoreApplication>
#include <QFile>

#include <filesystem>

namespace velmara {
namespace {

// For people to read: bytes that are no text in the system's encoding are shown as well as can be.
QString shown(const std::string& path) {
  return QFile::decodeName(path.c_str());
}

QString nameOf(const std::string& path) {
  return shown(std::filesystem::path(path).filename().string());
}

std::string okButton() {
  return QCoreApplication::translate("Questions", "OK").toStdString();
}

}  // namespace

std::string saveChangesHeader(const std::string& fileName) {
  return QCoreApplication::translate("SaveChangesSheet",
                                     "Do you want to save the changes made to the document "
                                     "\"%1\" ?")
      .arg(shown(fileName))
      .toStdString();
}

Alert formatNotSupportedAlert(const std::string& details) {
  return {QCoreApplication::translate("Questions", "File Format Not Suppored").toStdString(),
          shown(details).toStdString(),
          {okButton()}};
}

Alert replaceOriginalQuestion(const PhotoFile& photo) {
  return {QCoreApplication::translate("Questions", "Replace the original “%1”?")
              .arg(shown(photo.fileName))
              .toStdString(),
          QCoreApplication::translate("Questions",
                                      "This is the photo you opened. Its file will hold the "
                                      "denoised photo instead, and the original cannot be brought "
                                      "back.")
              .toStdString(),
          {QCoreApplication::translate("Questions", "Replace").toStdString(),
           QCoreApplication::translate("Questions", "Cancel").toStdString()}};
}

Alert exportFailedAlert(const std::string& pathToExportImage, const std::string& reason) {
  return {QCoreApplication::translate("Questions", "“%1” was not saved.")
              .arg(nameOf(pathToExportImage))
              .toStdString(),
          shown(reason).toStdString(),
          {okButton()}};
}

Alert previewFailedAlert(const std::string& reason) {
  return {
      QCoreApplication::translate("Questions", "The photo could not be denoised.").toStdString(),
      shown(reason).toStdString(),
      {okButton()}};
}

std::string savedLabel(const std::string& pathToExportImage) {
  return QCoreApplication::translate("Questions", "Saved %1")
      .arg(nameOf(pathToExportImage))
      .toStdString();
}

}  // namespace velmara
