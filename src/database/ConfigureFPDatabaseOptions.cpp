// Search options on the command line: the descriptions of the four parameters, and reading them back.

#include <charconv>
#include <string>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

using QXSystem::QXInterface;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;

namespace {

constexpr const char* subInterfaceName = "fingerprint database search options";

std::string ApiLine(const std::string& what) {
  return "\n\tAPI : " + what;
}

// The shortest text that reads back as the same number.
std::string ToText(float value) {
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof(text), value).ptr);
}

QXParameter LimitParameter(unsigned dflt) {
  QXParameter parameter("-limit", QXParameterType::Integer);
  parameter.SetAlias("-l")
      .SetBrief("Maximum number of similarity scores")
      .SetDetail("\n\tIf set to zero, then all of the similarity scores are returned" +
                 ApiLine("QXFPDatabaseOptions::SetLimit method"))
      .SetLegalRange("0", "100000")
      .SetDefault(std::to_string(dflt));
  return parameter;
}

QXParameter SimFuncParameter(unsigned dflt) {
  QXParameter parameter("-simfunc", QXParameterType::String);
  parameter.SetAlias("-s")
      .SetBrief("Similarity measure")
      .SetDetail(ApiLine("QXSimMeasure namespace, QXFPDatabaseOptions::SetSimFunc method and "
                         "QXGetSimilarityMeasureName function"));
  for (const auto& entry : QXGetSimMeasureNamespaceInterface().GetEntries())
    parameter.AddLegalValue(entry.name);
  parameter.SetDefault(QXGetSimilarityMeasureName(dflt));
  return parameter;
}

QXParameter CutoffParameter() {
  QXParameter parameter("-cutoff", QXParameterType::Float);
  parameter.SetAlias("-c")
      .SetBrief("Similarity cutoff value")
      .SetDetail("\n\tBy default there is no similarity cutoff" +
                 ApiLine("QXFPDatabaseOptions::SetCutoff method"));
  return parameter;
}

QXParameter DescendingParameter(bool dflt) {
  QXParameter parameter("-descending", QXParameterType::Bool);
  parameter.SetAlias("-d")
      .SetBrief("Order of similarity scores")
      .SetDetail("\n\tIf true scores are returned in descending order otherwise in ascending order" +
                 ApiLine("QXFPDatabaseOptions::SetDescendingOrder method"))
      .SetDefault(dflt ? "true" : "false");
  return parameter;
}

bool AddSubInterface(QXInterface& itf, const QXInterface& subInterface, bool isComplete) {
  if (isComplete && itf.AddInterface(subInterface)) return true;
  QXSystem::QXThrow.Warning("%s problem configuring fingerprint interface!",
                            "QXConfigureFPDatabaseOptions()");
  return false;
}

// Calls store with the parameter's value where there is one.
template <class T, class Store>
bool ReadInto(const QXInterface& itf, const char* name, Store store) {
  if (!itf.Has(name) || !itf.HasValue(name)) return true;
  T value{};
  if (!itf.Get(name, value)) return false;
  store(value);
  return true;
}

}  // namespace

bool QXConfigureFPDatabaseOptions(QXInterface& itf, unsigned flags) {
  QXInterface search(subInterfaceName);
  bool isComplete = true;
  if (flags & QXFPDatabaseOptionsFlag::Limit) isComplete &= search.AddParameter(LimitParameter(10));
  if (flags & QXFPDatabaseOptionsFlag::SimFunc) {
    isComplete &= search.AddParameter(SimFuncParameter(QXSimMeasure::Tanimoto));
  }
  if (flags & QXFPDatabaseOptionsFlag::Cutoff) isComplete &= search.AddParameter(CutoffParameter());
  return AddSubInterface(itf, search, isComplete);
}

bool QXConfigureFPDatabaseOptions(QXInterface& itf, const QXFPDatabaseOptions& defaults) {
  QXInterface search(subInterfaceName);
  QXParameter cutoff = CutoffParameter();
  if (defaults.HasCutoff()) cutoff.SetDefault(ToText(defaults.GetCutoff()));
  bool isComplete = search.AddParameter(LimitParameter(defaults.GetLimit()));
  isComplete &= search.AddParameter(SimFuncParameter(defaults.GetSimFunc()));
  isComplete &= search.AddParameter(cutoff);
  isComplete &= search.AddParameter(DescendingParameter(defaults.GetDescendingOrder()));
  return AddSubInterface(itf, search, isComplete);
}

bool QXSetupFPDatabaseOptions(QXFPDatabaseOptions& options, const QXInterface& itf) {
  bool isRead = ReadInto<unsigned>(itf, "-limit", [&](unsigned limit) { options.SetLimit(limit); });
  isRead &= ReadInto<std::string>(itf, "-simfunc", [&](const std::string& name) {
    options.SetSimFunc(QXGetSimMeasureNamespaceInterface().GetValue(name, 0));
  });
  isRead &= ReadInto<float>(itf, "-cutoff", [&](float cutoff) { options.SetCutoff(cutoff); });
  isRead &=
      ReadInto<bool>(itf, "-descending", [&](bool descending) { options.SetDescendingOrder(descending); });
  return isRead;
}

}  // namespace QXFingrix
