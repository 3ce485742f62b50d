#include "index/projectFolderContainingURL.h"

#include "index/EventsTestSupport.h"

namespace {

TEST_F(EventsTest, FolderThatWouldIndexAPath) {
    use({{{"path", "p"},
          {"rules", {{{"pattern", "*~"}, {"patternType", 1}, {"fsItemType", 7}}}},
          {"excludedFolders", {{{"pattern", "skip"}, {"patternType", 0}, {"fsItemType", 2}}}}},
         {{"path", "p/inc"},
          {"ruleType", 1},
          {"limitSearchDepth", 0},
          {"rules", {{{"pattern", "*.c"}, {"patternType", 1}, {"fsItemType", 1}}}}}});
    folder.file("p/x.app/f");
    folder.folder("p/skip");
    const auto folderOf = [&](std::string_view path) -> std::string {
        const auto found = projectFolderContainingURL(*client.project, folder.at(path), types);
        return found ? found->url.path().substr(folder.url().path().size() + 1) : "";
    };
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"p/f", "p"},       {"p", "p"},      {"p/f~", ""},         {"p/skip/f", ""},
        {"p/skip", ""},     {"p/x.app", ""}, {"p/x.app/f", ""},    {"p/inc/f.c", "p/inc"},
        {"p/inc/f.h", "p"}, {"p/inc", "p"},  {"p/inc/d/f.c", "p"}, {"f", ""},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(folderOf(path), expected) << path;
}

}  // namespace
