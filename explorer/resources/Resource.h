#pragma once

/* Numbers of the program's resources. The resource compiler reads them too. */

#define IDI_EXPLORER 1
#define IDR_MENU 10
#define IDR_ALWAYS 11 /* Keys that mean the same everywhere. */
#define IDR_ITEMS 12  /* Keys that mean something to the list of items. */
#define IDR_ITEM_MENU 13
#define IDR_TRANSFER_MENU 14

#define IDD_SIGN_IN 100
#define IDD_MESSAGE 101
#define IDD_NAME 102
#define IDD_PROPERTIES 103

/* Commands. */
#define IDM_SIGN_IN 200
#define IDM_SIGN_OUT 201
#define IDM_EXIT 202
#define IDM_OPEN 203
#define IDM_DOWNLOAD 204
#define IDM_REPLACE 205
#define IDM_CHECK_OUT 206
#define IDM_CHECK_IN 207
#define IDM_DELETE 208
#define IDM_COPY_PATH 209
#define IDM_PROPERTIES 210
#define IDM_NEW_FOLDER 211
#define IDM_UPLOAD 212
#define IDM_UPLOAD_FOLDER 213
#define IDM_REFRESH 214
#define IDM_UP 215
#define IDM_SEARCH 216
#define IDM_ADDRESS 217
#define IDM_STOP 218
#define IDM_SELECT_ALL 219
#define IDM_CANCEL 220
#define IDM_RETRY 221
#define IDM_CLEAR 222
#define IDM_NEXT_PANE 223
#define IDM_TRANSFER_DETAILS 224
#define IDM_SORT_FIRST 225 /* And those of the other columns, in their order. */

/* Controls of the main window. */
#define IDC_TOOLBAR 300
#define IDC_ADDRESS 301
#define IDC_SEARCH 302
#define IDC_TREE 303
#define IDC_LIST 304
#define IDC_NOTICE 305
#define IDC_TRANSFERS 306
#define IDC_STATUS 307
#define IDC_NOTICE_TEXT 308
#define IDC_NOTICE_ACTION 309
#define IDC_NOTICE_DETAILS 310
#define IDC_ADDRESS_LABEL 311
#define IDC_SEARCH_LABEL 312
#define IDC_TRANSFER_LIST 313

/* Controls of dialogs. */
#define IDC_URL 400
#define IDC_USER 401
#define IDC_PASSWORD 402
#define IDC_STAY 403
#define IDC_STATE 404
#define IDC_DETAILS 405
#define IDC_DETAILS_TEXT 406
#define IDC_PROGRESS 407
#define IDC_NAME 408
#define IDC_PROMPT 409
#define IDC_MESSAGE_ICON 410
#define IDC_FIRST_CHOICE 420 /* And the next two. */
#define IDC_FIRST_PROPERTY 430

/* Texts. */
#define IDS_TITLE 500
#define IDS_TITLE_IN_FOLDER 501
#define IDS_ADDRESS 502
#define IDS_SEARCH 503
#define IDS_FOLDERS 504
#define IDS_ITEMS 505
#define IDS_TRANSFERS 506

#define IDS_COLUMN_NAME 510 /* And those of the other columns, in their order. */
#define IDS_TRANSFER_NAME 520
#define IDS_TRANSFER_KIND 521
#define IDS_TRANSFER_PROGRESS 522
#define IDS_TRANSFER_STATE 523
#define IDS_KIND_DOWNLOAD 525 /* And those of the other kinds, in their order. */

#define IDS_RATE 540
#define IDS_RATE_AND_TIME_LEFT 541
#define IDS_FAILED 542
#define IDS_FILES_FAILED 543
#define IDS_WAITING 544
#define IDS_FILES_RUNNING 545
#define IDS_PROCESSING 546
#define IDS_NEEDS_SIGN_IN 547
#define IDS_FINISHED 548
#define IDS_FILES_FINISHED 549
#define IDS_CANCELLED 550
#define IDS_CANCELLED_JOB_GOES_ON 551
#define IDS_SILENT 552

#define IDS_SIGNING_IN 560
#define IDS_NEED_ADDRESS_AND_USER 561
#define IDS_SESSION_ENDED 562
#define IDS_SERVER_SAYS 563
#define IDS_MAY_HAVE_HAPPENED 564
#define IDS_DETAIL_CODE 565
#define IDS_DETAIL_STATUS 566
#define IDS_NO_DETAILS 567
#define IDS_SESSION_NOT_KEPT 568

#define IDS_OK 570
#define IDS_CANCEL 571
#define IDS_SHOW_DETAILS 572
#define IDS_TRY_AGAIN 573
#define IDS_DO_SIGN_IN 574
#define IDS_DO_DELETE 575
#define IDS_DO_OPEN 576
#define IDS_DO_REPLACE 577
#define IDS_DO_SKIP 578
#define IDS_DO_CLOSE 579

#define IDS_LOADING 590
#define IDS_EMPTY_FOLDER 591
#define IDS_NOTHING_FOUND 592
#define IDS_NOT_SIGNED_IN 593
#define IDS_STOPPED 594

#define IDS_STATUS_READY 600
#define IDS_STATUS_ITEMS 601
#define IDS_STATUS_FILTERED 602
#define IDS_STATUS_SELECTED 603
#define IDS_STATUS_BUSY 604
#define IDS_STATUS_SILENT 605
#define IDS_STATUS_USER 606
#define IDS_STATUS_TRANSFERS 607

#define IDS_ASK_DELETE_ONE 620
#define IDS_ASK_DELETE_MANY 621
#define IDS_ASK_PROGRAM 622
#define IDS_ASK_REPLACE_ONE 623
#define IDS_ASK_REPLACE_MANY 624
#define IDS_ASK_CLOSE 625
#define IDS_ASK_SIGN_OUT 626
#define IDS_ASK_REPLACE_CONTENT 627
#define IDS_ASK_DELETE_FOLDER 628
#define IDS_NEW_FOLDER_TITLE 630
#define IDS_NEW_FOLDER_PROMPT 631
#define IDS_FAILED_ITEM 632
#define IDS_CANNOT_OPEN 633
#define IDS_CANNOT_COPY 634
#define IDS_CANNOT_MAKE_FILE 635
#define IDS_NOT_A_FILE 636
#define IDS_YES 637
#define IDS_NO 638
#define IDS_NOT_MARKED 639
#define IDS_FOLDER_LEFT 640
#define IDS_SAME_NAME 641

#define IDS_TOOL_FIRST 650 /* The tool bar's, in its order. */
