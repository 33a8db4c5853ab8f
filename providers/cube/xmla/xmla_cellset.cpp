#include "providers/cube/xmla/xmla_cellset.h"

#include "platform/failure.h"

namespace vok::xmla {

void XmlaCellset::SetActiveConnection(CubeConnection& connection) {
  opened_ = XmlaConnection::From(connection).opened();
}

void XmlaCellset::Open() {
  Close();
  if (opened_ == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The cellset has no open connection.");
  }
  auto data = std::make_unique<CellsetData>(opened_->max_cells);
  opened_->server->Execute(opened_->catalog, source_, *data);
  data_ = std::move(data);
  for (std::size_t i = 0; i < data_->AxisCount(); ++i) axes_.emplace_back(*data_, i);
}

void XmlaCellset::Close() {
  axes_.clear();
  data_.reset();
}

const CellsetAxis& XmlaCellset::AxisAt(std::size_t index) const {
  if (index < AxisCount()) return axes_[index];
  throw Failure(failure_number::kItemNotFound, "The cellset has no axis " + std::to_string(index) +
                                                   ": it has " + std::to_string(AxisCount()) + ".");
}

const CellsetData& XmlaCellset::Data() const {
  if (data_ == nullptr) throw Failure(failure_number::kObjectClosed, "The cellset is not open.");
  return *data_;
}

}  // namespace vok::xmla
