#include "providers/cube/olap/olap_cellset.h"

#include "platform/failure.h"
#include "providers/cube/olap/mdx/engine.h"
#include "providers/cube/olap/olap_connection.h"

namespace vok::olap {

void OlapCellset::SetActiveConnection(CubeConnection& connection) {
  const OlapConnection& own = OlapConnection::From(connection);
  opened_ = own.opened();
  catalog_ = own.catalog();
  cancelled_ = own.cancelled();
  limits_ = own.limits();
  limits_.cancelled = cancelled_.get();
}

void OlapCellset::Open() {
  Close();
  if (opened_ == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The cellset has no open connection.");
  }
  result_ = catalog_ ? RunMdx(opened_->cubes[*catalog_], source_, limits_)
                     : RunMdx(opened_->cubes, source_, limits_);
  for (std::size_t i = 0; i < result_->axes().size(); ++i) axes_.emplace_back(*result_, i);
}

void OlapCellset::Close() {
  axes_.clear();
  result_.reset();
}

const CellsetAxis& OlapCellset::AxisAt(std::size_t index) const {
  if (index < AxisCount()) return axes_[index];
  throw Failure(failure_number::kItemNotFound, "The cellset has no axis " + std::to_string(index) +
                                                   ": it has " + std::to_string(AxisCount()) + ".");
}

const MdxResult& OlapCellset::Result() const {
  if (result_ == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The cellset is not open.");
  }
  return *result_;
}

}  // namespace vok::olap
