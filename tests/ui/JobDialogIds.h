#pragma once

// A dialog that shows both jobs of the worker thread.
#define IDD_JOB 1100
#define IDC_JOB_TREE 1101
#define IDC_JOB_TOTAL 1102
#define IDC_JOB_DONE 1103
#define IDC_JOB_STOP 1104
