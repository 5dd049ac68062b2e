#include "core/instruments/fluorimeter_model.h"

#include <array>

namespace zorvel {

std::span<const FluorimeterModel* const> FluorimeterModels() {
  static const std::array<const FluorimeterModel*, 2> models{&kLs50, &kLs50B};
  return models;
}

const FluorimeterModel& FluorimeterModelFor(int preference) {
  for (const FluorimeterModel* model : FluorimeterModels()) {
    if (model->preference == preference) return *model;
  }
  return kLs50B;
}

const FluorimeterModel* FluorimeterModelNamed(std::string_view name) {
  for (const FluorimeterModel* model : FluorimeterModels()) {
    if (model->name == name) return model;
  }
  return nullptr;
}

const FluorimeterModel& FluorimeterModelSelectedBy(std::string_view name) {
  const FluorimeterModel* named = FluorimeterModelNamed(name);
  return named != nullptr ? *named : kLs50B;
}

}  // namespace zorvel
