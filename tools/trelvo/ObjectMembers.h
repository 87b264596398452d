#pragma once

#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>

#include <functional>

namespace trelvo::tool {

/// Calls `take` with `object` and then with every generic object inside it, as a property or in a
/// list, each ahead of what it holds: a container, its measurements, their lists.
///
/// What a stream gives is nested at most 512 deep, and so is this walk.
void forEachObject(const gom::SharedPointer<gom::GenericObject>& object,
                   const std::function<void(const gom::SharedPointer<gom::GenericObject>&)>& take);

}  // namespace trelvo::tool
