#include "views/DiskAccessDialog.h"

#include "views/Controls.h"
#include "views/QtTest.h"

class DiskAccessDialogTest : public QtTest {};

TEST_F(DiskAccessDialogTest, EachButtonIsToldAndTheWindowStaysUntilItIsHidden) {
    DiskAccessDialog dialog;
    std::string told;
    dialog.show(
        {.later = [&] { told += "later "; }, .openSecurityAndPrivacy = [&] { told += "open "; }});
    const auto buttons = childrenOf<SheetButton>(*dialog.widget());
    ASSERT_EQ(buttons.size(), 2u);
    buttons[0]->click();
    buttons[1]->click();
    EXPECT_FALSE(dialog.widget()->close());  // is to decide later
    EXPECT_EQ(told, "later open later ");
    EXPECT_TRUE(dialog.widget()->isVisible());
    dialog.hide();
    EXPECT_FALSE(dialog.widget()->isVisible());
}
