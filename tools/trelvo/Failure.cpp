#include "tools/trelvo/Failure.h"

namespace trelvo::tool {

int reporting(CommandContext& context, const std::function<void()>& work) {
  try {
    work();
  } catch (const ReaderGone&) {
    return kExitGood;
  } catch (const Failure& failure) {
    context.err << "trelvo: " << failure.what() << std::endl;
    return kExitFailed;
  }
  return kExitGood;
}

}  // namespace trelvo::tool
