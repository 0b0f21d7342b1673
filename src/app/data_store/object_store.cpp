#include "app/data_store/object_store.h"

#include <QUndoCommand>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <span>
#include <system_error>
#include <utility>

#include "platform/whole_file.h"

namespace velmara {
namespace {

constexpr QLatin1String kStore("store");
constexpr QLatin1String kModel("model");
constexpr QLatin1String kObject("object");
constexpr QLatin1String kEntity("entity");
constexpr QLatin1String kAttribute("attribute");
constexpr QLatin1String kName("name");
constexpr QLatin1String kValue("value");

std::string textOf(const QXmlStreamReader& xml, QLatin1String attribute) {
  return xml.attributes().value(attribute).toUtf8().toStdString();
}

ManagedObject readObject(QXmlStreamReader& xml) {
  ManagedObject object;
  object.entity = textOf(xml, kEntity);
  while (xml.readNextStartElement()) {
    if (xml.name() != kAttribute) xml.raiseError();
    object.attributes[textOf(xml, kName)] = textOf(xml, kValue);
    xml.skipCurrentElement();
  }
  return object;
}

Result<ManagedObjects> readStore(const std::string& bytes, const DataModel& model) {
  QXmlStreamReader xml(QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size())));
  ManagedObjects objects;
  if (!xml.readNextStartElement() || xml.name() != kStore || textOf(xml, kModel) != model.name) {
    return Error{"the file is no store of this model"};
  }
  while (xml.readNextStartElement()) {
    if (xml.name() != kObject) xml.raiseError();
    objects.push_back(readObject(xml));
    if (!model.knows(objects.back().entity)) xml.raiseError();
  }
  // Nothing may stand after the store.
  while (!xml.atEnd()) xml.readNext();
  if (xml.hasError()) return Error{"the store is damaged"};
  return objects;
}

// Whether XML 1.0 has a way to write the text.
bool canBeXml(const std::string& text) {
  const QString characters = QString::fromStdString(text);
  if (characters.toStdString() != text) return false;
  const auto isForbidden = [](char32_t c) {
    const bool isControl = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
    return isControl || (c >= 0xD800 && c <= 0xDFFF) || c == 0xFFFE || c == 0xFFFF;
  };
  const auto points = characters.toUcs4();
  return std::none_of(points.begin(), points.end(), isForbidden);
}

// Values are attributes of XML, not its text: a reader gives line ends in them back as they were.
Result<QByteArray> writeStore(const ManagedObjects& objects, const DataModel& model) {
  QByteArray bytes;
  QXmlStreamWriter xml(&bytes);
  xml.setAutoFormatting(true);
  xml.writeStartDocument();
  xml.writeStartElement(kStore);
  xml.writeAttribute(kModel, QString::fromStdString(model.name));
  for (const ManagedObject& object : objects) {
    xml.writeStartElement(kObject);
    xml.writeAttribute(kEntity, QString::fromStdString(object.entity));
    for (const auto& [name, value] : object.attributes) {
      if (!canBeXml(name) || !canBeXml(value)) return Error{"a text cannot be written as XML"};
      xml.writeEmptyElement(kAttribute);
      xml.writeAttribute(kName, QString::fromStdString(name));
      xml.writeAttribute(kValue, QString::fromStdString(value));
    }
    xml.writeEndElement();
  }
  xml.writeEndDocument();
  return bytes;
}

// The store is small: a change keeps both states whole.
class Change final : public QUndoCommand {
 public:
  Change(ManagedObjects& objects, ManagedObjects after)
      : objects_(objects), before_(objects), after_(std::move(after)) {}

  void undo() override { objects_ = before_; }
  void redo() override { objects_ = after_; }

 private:
  ManagedObjects& objects_;
  ManagedObjects before_;
  ManagedObjects after_;
};

}  // namespace

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

Status PersistentStoreCoordinator::addXmlStore(const std::string& path) {
  constexpr std::size_t kLargest = std::size_t{64} << 20;
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (std::filesystem::exists(status)) {
    const auto bytes = readSmallFile(path, kLargest);
    if (!bytes) return Error{"the store cannot be read"};
    Result<ManagedObjects> stored = readStore(*bytes, model_);
    if (!stored) return Error{stored.error()};
    objects_ = std::move(stored).value();
  } else if (status.type() != std::filesystem::file_type::not_found) {
    return Error{error.message()};
  }
  path_ = path;
  return Done{};
}

Status PersistentStoreCoordinator::save(const ManagedObjects& objects) {
  const Result<QByteArray> bytes = writeStore(objects, model_);
  if (!bytes) return Error{bytes.error()};
  const auto* data = reinterpret_cast<const std::uint8_t*>(bytes->constData());
  Status saved = replaceFile(path_, std::span(data, static_cast<std::size_t>(bytes->size())));
  if (saved) objects_ = objects;
  return saved;
}

ManagedObjectContext::ManagedObjectContext(PersistentStoreCoordinator& coordinator)
    : coordinator_(coordinator), objects_(coordinator.objects()) {}

bool ManagedObjectContext::insertObject(const ManagedObject& object) {
  if (!coordinator_.managedObjectModel().knows(object.entity)) return false;
  ManagedObjects changed = objects_;
  changed.push_back(object);
  change(std::move(changed));
  return true;
}

void ManagedObjectContext::deleteObject(const ManagedObject& object) {
  ManagedObjects changed = objects_;
  if (std::erase(changed, object) > 0) change(std::move(changed));
}

void ManagedObjectContext::change(ManagedObjects changed) {
  undo_.push(new Change(objects_, std::move(changed)));
}

bool ManagedObjectContext::commitEditing() {
  std::erase_if(editors_, [](const Editor& commit) { return commit(); });
  return editors_.empty();
}

Status ManagedObjectContext::save() {
  Status saved = coordinator_.save(objects_);
  if (saved) undo_.setClean();
  return saved;
}

}  // namespace velmara
