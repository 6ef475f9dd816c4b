#pragma once

#include <KesCommon/Text.h>

/// The texts that the shell shows around a test object, in the language of the process. Any thread.
namespace KesTree::TreePresentersLocalization {

/// The title of the window of the test object.
inline const char* testObjectWindowTitle()
{
    return lng::Text("TreePresenters.testObjectWindowTitle", "Test object", "Объект испытаний").get();
}

} // namespace KesTree::TreePresentersLocalization
