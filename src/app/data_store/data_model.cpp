#include "app/data_store/data_model.h"

#include <QXmlStreamReader>

#include <algorithm>

#include "services/small_file.h"

namespace velmara {

bool DataModel::knows(const std::string& entity) const {
  return std::find(entities.begin(), entities.end(), entity) != entities.end();
}

Result<DataModel> readDataModel(const std::string& path) {
  constexpr std::size_t kLargest = std::size_t{1} << 20;
  const auto bytes = readSmallFile(path, kLargest);
  if (!bytes) return Error{"the data model cannot be read"};
  QXmlStreamReader xml(QByteArray::fromRawData(bytes->data(), static_cast<int>(bytes->size())));
  DataModel model;
  if (xml.readNextStartElement() && xml.name() == QLatin1String("model")) {
    model.name = xml.attributes().value(QLatin1String("name")).toUtf8().toStdString();
    while (xml.readNextStartElement()) {
      if (xml.name() == QLatin1String("entity")) {
        model.entities.push_back(
            xml.attributes().value(QLatin1String("name")).toUtf8().toStdString());
      }
      xml.skipCurrentElement();
    }
  } else {
    xml.raiseError();
  }
  if (xml.hasError()) return Error{"the data model cannot be understood"};
  return model;
}

}  // namespace velmara
