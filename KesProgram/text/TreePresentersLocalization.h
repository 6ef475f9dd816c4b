#pragma once

#include <KesProgram/text/TextPair.h>

/// The texts that the shell shows around a test object, in the language of the process. Any thread.
namespace KesTree::TreePresentersLocalization {

/// The title of the window of the test object.
inline const char* testObjectWindowTitle()
{
    return lng::choose({"Test object", "Объект испытаний"});
}

} // namespace KesTree::TreePresentersLocalization
