#include "control/automation/type_information.h"

#include "control/automation/strings.h"
#include "control/interface/identities.h"
#include "platform/windows/module_file.h"

namespace quorvane::component {

HRESULT TypeInformation::Find(const GUID& id, ITypeInfo** out) {
  *out = nullptr;
  if (!library_) {
    const HRESULT loaded =
        ::LoadTypeLibEx(Wide(ModuleFileName()), REGKIND_NONE, library_.Receive());
    if (FAILED(loaded)) return loaded;
  }
  return library_->GetTypeInfoOfGuid(id, out);
}

ITypeInfo* TypeInformation::OfMembers() {
  if (!members_ && FAILED(Find(AsGuid(identities::kPresent.interface_id), members_.Receive()))) {
    members_.Reset();
  }
  return members_.Get();
}

}  // namespace quorvane::component
