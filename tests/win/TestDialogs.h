#pragma once

// The dialog that the tests of the dialog class run.
#define IDD_TEST 1000
#define IDC_TEST_EDIT 1001
#define IDC_TEST_BUTTON 1002
#define IDC_TEST_LIST 1003
