#include "core/datafiles/data_set_naming.h"

namespace zorvel {

namespace {

std::size_t fileNameStart(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? 0 : slash + 1;
}

}  // namespace

std::string BasePathOf(const std::string& chosenPath) {
  const std::size_t nameStart = fileNameStart(chosenPath);
  const std::size_t dot = chosenPath.find_last_of('.');
  if (dot == std::string::npos || dot < nameStart) return chosenPath;
  return chosenPath.substr(0, dot);
}

std::string DataSetNameOf(const std::string& chosenPath) {
  const std::string base = BasePathOf(chosenPath);
  return base.substr(fileNameStart(base));
}

DataSetPaths DataSetPathsFor(const MethodSettings& method, const std::string& basePath,
                             DataSetPaths current) {
  DataSetPaths paths;
  paths.DataSetName = std::move(current.DataSetName);
  paths.MethodFilePath = std::move(current.MethodFilePath);
  if (method.Fixed) {
    paths.FixPath = basePath + ".FIX";
    paths.CtlPath = basePath + ".CTL";
    paths.BlkPath = basePath + ".BLK";
  }
  if (method.Synch) {
    paths.SynPath = basePath + ".SYN";
    paths.StlPath = basePath + ".STL";
    paths.SlkPath = basePath + ".SLK";
  }
  if (method.DeliveryMethod == Delivery::Autosampler) paths.LogFilePath = basePath + ".LOG";
  return paths;
}

std::string DataFileLabel(const MethodSettings& method, const std::string& basePath) {
  if (method.Fixed && method.Synch) return basePath + " (.FIX; .SYN)";
  return basePath + (method.Fixed ? ".FIX" : ".SYN");
}

}  // namespace zorvel
