// What a data file asks of the build of the program.
#include "arena_generated.h"
#include "engine/data/data_file.h"
#include "engine/files/paths.h"
#include "engine/licence/licence.h"

namespace arena::data {

std::string missing_in_build(const DataFile& file) {
  const auto needs = [](const std::string& what) {
    return files::on_one_line("the data file needs " + what + " of the program; this is the " + licence::in_words());
  };
  const auto* const edition = file.content->edition();
  if (edition != nullptr && edition->str() != licence::edition()) return needs("the edition '" + edition->str() + "'");
  std::string missing;
  std::size_t count = 0;
  if (file.content->features() != nullptr) {
    for (const auto* feature : *file.content->features()) {
      if (licence::has_feature(feature->str())) continue;
      missing += (count++ > 0 ? "', '" : "") + feature->str();
    }
  }
  return count == 0 ? "" : needs((count == 1 ? "the feature '" : "the features '") + missing + "'");
}

}  // namespace arena::data
