#pragma once

// Symbols of the SMS module's resources, shared by the C++ code and sms.rc.
// Only #define lines and comments: the resource-script parser reads this file as well.
//
// Numbering: strings 10000-12531 and 57344; menus and dialog templates 10000-12048 (a separate
// kind of resource, so a menu may share a number with a string or a template); menu commands
// as the module has always numbered them, and 13000-13099 for the commands below that had no
// number of their own (edit commands, the cell broadcast list's "View").

// ---- Menus -------------------------------------------------------------------------------------
#define IDR_MENU_INBOX_ITEM 10000      // tap and hold on an Inbox row
#define IDR_MENU_OUTBOX_ITEM 10001     // tap and hold on an Outbox row
#define IDR_MENU_FOLDER 10005          // tap on the folder label of the main window
#define IDR_MENU_EDIT 10007            // command bar of the composer, service centre, signature
#define IDR_MENU_SORT 10009            // tap on the sort label of the main window
#define IDR_MENU_MAIN 10012            // menu bar of the main window
#define IDR_MENU_SENDING_PAGE 10013    // command bar of the Sending options page
#define IDR_MENU_VARIABLE_VALUES 10017 // "Variable Names": filled with a variable's values
#define IDR_MENU_VIEW_INBOX 10018      // menu bar of the message view, Inbox message
#define IDR_MENU_VIEW_OUTBOX 10019     // menu bar of the message view, Outbox message
#define IDR_MENU_CHANNEL_EDIT 12002    // command bar of the add-channel dialog
#define IDR_MENU_FAVORITES 12010       // RECP button of the composer
#define IDR_MENU_CONTEXT 12015         // "ContextMenu": New / Edit / Delete on option lists
#define IDR_MENU_CB_ITEM 12047         // tap and hold on a cell broadcast row
#define IDR_MENU_CHANNEL 12048         // command bar of the Cell Broadcast options page

// ---- Dialog templates --------------------------------------------------------------------------
#define IDD_SIM_TRANSFER 10000
#define IDD_SERVICE_CENTRE_EDIT 10001
#define IDD_EDIT_TEMPLATE 10002
#define IDD_EDIT_VARIABLE 10003
#define IDD_NEW_MESSAGE_NOTIFICATION 10004
#define IDD_COMPOSER 10005
#define IDD_SENDING_NOTIFICATION 10006
#define IDD_SERVICE_CENTRE_DIRECTORY 10007
#define IDD_MAIN 10008
#define IDD_PAGE_SENDING 10009
#define IDD_PAGE_RECEIVING 10010
#define IDD_PAGE_TEMPLATES 10011
#define IDD_PAGE_SIGNATURE 10012
#define IDD_PAGE_VARIABLES 10013
#define IDD_MESSAGE_VIEW 10015
#define IDD_DATETIME_PICKER 12000
#define IDD_DELETE_MESSAGES 12001
#define IDD_PAGE_CELL_BROADCAST 12043
#define IDD_ADD_CHANNEL 12044
#define IDD_CB_MESSAGE_VIEW 12045

// ---- Bitmaps -----------------------------------------------------------------------------------
#define IDB_COMMAND_BAR 10008 // the command bars' button pictures (command_bar_images.h)

// ---- Controls ----------------------------------------------------------------------------------
// "DateTime Picker" (IDD_DATETIME_PICKER)
#define IDC_DATETIME_DATE 10002  // date picker, shown for every variable but Time
#define IDC_DATETIME_TIME 10003  // time picker, hidden until the variable is Time
#define IDC_DATETIME_GROUP 12003 // group box "Choose Date" around both pickers
// Main window (IDD_MAIN), message view (IDD_MESSAGE_VIEW), Delete Messages (IDD_DELETE_MESSAGES)
#define IDC_MAIN_LIST 10032    // Inbox and Outbox list
#define IDC_MAIN_FOLDER 10015  // folder label (tap: folder menu)
#define IDC_MAIN_SORT 10059    // sort label (tap: sort menu)
#define IDC_MAIN_CB_LIST 10033 // cell broadcast list
#define IDC_MAIN_TICKER 12066  // ticker line
#define IDC_VIEW_TITLE 10062
#define IDC_VIEW_DOWN 10005 // shows the detail lines
#define IDC_VIEW_UP 10082   // hides them
#define IDC_VIEW_TEXT 10008
#define IDC_VIEW_FROM_LABEL 12011
#define IDC_VIEW_NAME 12023
#define IDC_VIEW_NUMBER 12024
#define IDC_VIEW_DATE_LABEL 10001
#define IDC_VIEW_DATE 12025
#define IDC_VIEW_STATUS_LABEL 10002
#define IDC_VIEW_VALIDITY_LABEL 10003
#define IDC_VIEW_SCA_LABEL 10004
#define IDC_VIEW_REPLY_LABEL 10006
#define IDC_VIEW_STATUS 12026
#define IDC_VIEW_VALIDITY 12027
#define IDC_VIEW_SCA 12028
#define IDC_VIEW_REPLY 12029
#define IDC_VIEW_RECIPIENTS 12030
#define IDC_VIEW_NOT_SENT_LABEL 12186 // a failed message: the recipients it did not reach
#define IDC_VIEW_NOT_SENT 12187
#define IDC_VIEW_DELIVERED_LABEL 12188 // a sent message: when the network reported it delivered
#define IDC_VIEW_DELIVERED 12189
#define IDC_DELETE_ALL 10048
#define IDC_DELETE_OLDER 10049
#define IDC_DELETE_DAYS 10013
#define IDC_DELETE_DAYS_SPIN 10061
#define IDC_DELETE_DAYS_UNIT 12010
// Options sheet: the Signature, Sending and Receiving pages, the service-centre directory
// (IDD_SERVICE_CENTRE_DIRECTORY) and edit (IDD_SERVICE_CENTRE_EDIT) dialogs
#define IDC_FACTORY_SETTINGS 10014 // "Factory Settings" on every page and dialog that has one
#define IDC_SIGNATURE_FIRST_NAME_LABEL 10025
#define IDC_SIGNATURE_LAST_NAME_LABEL 10026
#define IDC_SIGNATURE_PHONE_LABEL 10028
#define IDC_SIGNATURE_FIRST_NAME 10006
#define IDC_SIGNATURE_LAST_NAME 10007
#define IDC_SIGNATURE_PHONE 10009
#define IDC_SENDING_SC_LABEL 10029
#define IDC_SENDING_SC 10055
#define IDC_SENDING_ROAMING 10051
#define IDC_SENDING_PREFER_GPRS 10046
#define IDC_SENDING_SHOW_PROGRESS 10057
#define IDC_SENDING_OPTIONS_LABEL 10024
#define IDC_SENDING_VALIDITY_LABEL 10031
#define IDC_SENDING_VALIDITY 10083
#define IDC_SENDING_SAME_SC 10053
#define IDC_SENDING_STATUS_REPORT 10050
#define IDC_RECEIVING_PLAY_SOUND 10043
#define IDC_RECEIVING_SOUND_LABEL 10030
#define IDC_RECEIVING_SOUND 10060
#define IDC_SC_DIRECTORY_CAPTION 12036
#define IDC_SC_DIRECTORY_LIST 10056
#define IDC_SC_DIRECTORY_NEW 10036
#define IDC_SC_EDIT_CAPTION 12037
#define IDC_SC_EDIT_NAME_LABEL 12038
#define IDC_SC_EDIT_NUMBER_LABEL 12039
#define IDC_SC_EDIT_NAME 10011
#define IDC_SC_EDIT_NUMBER 10012
// Cell Broadcast options page (IDD_PAGE_CELL_BROADCAST)
#define IDC_CB_TICKER_SCROLLS 12044 // check box "Message ticker scrolls"
#define IDC_CB_HORIZONTALLY 12045
#define IDC_CB_VERTICALLY 12046
#define IDC_CB_SHOW_DIALOG 12047 // check box "Show dialog for"
#define IDC_CB_CHANGED_MESSAGES 12048
#define IDC_CB_EVERY_MESSAGE 12049
#define IDC_CB_CHANNELS 12050  // list box, sorted as text
#define IDC_CB_LANGUAGES 12051 // list box, several selected, item data = language code
#define IDC_CB_CHANNELS_LABEL 12052
#define IDC_CB_LANGUAGES_LABEL 12053
#define IDC_CB_STATUS 12057 // waiting and error texts, in place of the lists
// Add-channel dialog (IDD_ADD_CHANNEL)
#define IDC_ADD_CHANNEL_LABEL 12054
#define IDC_ADD_CHANNEL_NUMBER 12055 // digits only
#define IDC_ADD_CHANNEL_CAPTION 12056
// Cell broadcast message view (IDD_CB_MESSAGE_VIEW)
#define IDC_CBVIEW_CHANNEL 12058
#define IDC_CBVIEW_DATE 12059
#define IDC_CBVIEW_COUNT 12060
#define IDC_CBVIEW_CHANNEL_LABEL 12061
#define IDC_CBVIEW_DATE_LABEL 12062
#define IDC_CBVIEW_COUNT_LABEL 12063
#define IDC_CBVIEW_TEXT 12064
#define IDC_CBVIEW_CAPTION 12065
// Composer "New Message" (IDD_COMPOSER)
#define IDC_COMPOSE_SEND 10054           // SEND
#define IDC_COMPOSE_TO_LABEL 10038       // "To:"
#define IDC_COMPOSE_TO 10010             // recipients, numbers separated by commas
#define IDC_COMPOSE_TEMPLATE_LABEL 10078 // "Tmpl:"
#define IDC_COMPOSE_TEMPLATES 10075      // "Insert Template" and the stored templates
#define IDC_COMPOSE_DOWN 10005           // shows the details rows
#define IDC_COMPOSE_SCA_LABEL 10069      // details row "SCA:"
#define IDC_COMPOSE_SCA 10052            // details row: service centre number
#define IDC_COMPOSE_VALIDITY_LABEL 10073 // details row "Validity:"
#define IDC_COMPOSE_VALIDITY 10083       // details row: validity periods
#define IDC_COMPOSE_SAME_SCA 10053       // details row "Use same SCA for reply"
#define IDC_COMPOSE_UP 10082             // hides the details rows
#define IDC_COMPOSE_TEXT 10058           // the message text
#define IDC_COMPOSE_RECP 10006           // favourites menu
#define IDC_COMPOSE_RECIPIENTS 12039     // "3 Recipients", blank for 0 and 1
#define IDC_COMPOSE_COUNTER 12040        // "12 characters, 1 message"
// Notifications: "Message" (IDD_NEW_MESSAGE_NOTIFICATION), "Sending" (IDD_SENDING_NOTIFICATION),
// "Database" (IDD_SIM_TRANSFER). The header controls use the numbers of their header words.
#define IDC_NOTIFY_FROM_LABEL 12047
#define IDC_NOTIFY_NAME 12045
#define IDC_NOTIFY_DATE_LABEL 12048
#define IDC_NOTIFY_DATE 12046
#define IDC_NOTIFY_CALL_BACK 10016
#define IDC_NOTIFY_REPLY 10018
#define IDC_NOTIFY_READ_ALL 10017
#define IDC_NOTIFY_OTHERS 10065
#define IDC_NOTIFY_HEADER 10340 // as IDS_HEADER_MESSAGE
#define IDC_NOTIFY_NUMBER 12044
#define IDC_NOTIFY_TEXT 12020
#define IDC_SENDING_TO_LABEL 12049
#define IDC_SENDING_NAME 10068
#define IDC_SENDING_SEGMENT_LABEL 10070
#define IDC_SENDING_SEGMENT 10071
#define IDC_SENDING_DISMISS 10004
#define IDC_SENDING_HEADER 10338 // as IDS_HEADER_SENDING
#define IDC_SENDING_TEXT 12050
#define IDC_SENDING_NUMBER 10069
#define IDC_SIM_QUESTION 10064
#define IDC_SIM_YES 10081
#define IDC_SIM_NO 10080
#define IDC_SIM_NOTE_LABEL 10067
#define IDC_SIM_FULL_TEXT 10063
#define IDC_SIM_PROGRESS 12008
#define IDC_SIM_HEADER 10339 // as IDS_HEADER_DATABASE

// ---- Commands ----------------------------------------------------------------------------------
// Main window menu bar
#define IDM_MAIN_NEW 10237
#define IDM_MAIN_INFO 10273
#define IDM_MAIN_OPTIONS 10274
// Folder menu
#define IDM_FOLDER_INBOX 10260
#define IDM_FOLDER_OUTBOX 10261
#define IDM_FOLDER_CELLBROADCAST 12037
// Sort menu
#define IDM_SORT_DATE 10259
#define IDM_SORT_CONTACT 10258
#define IDM_SORT_STATUS 10264
#define IDM_SORT_ASCENDING 10262
#define IDM_SORT_DESCENDING 10263
// Inbox row menu
#define IDM_INBOX_REPLY 10214
#define IDM_INBOX_FORWARD 12001
#define IDM_INBOX_CALL 12002
#define IDM_INBOX_VIEW 12010
#define IDM_INBOX_DELETE 12003
#define IDM_INBOX_DELETE_MESSAGES 10233
#define IDM_INBOX_COPY_TO_PHONEBOOK 10231
// Outbox row menu
#define IDM_OUTBOX_FORWARD 10213
#define IDM_OUTBOX_CALL 10210
#define IDM_OUTBOX_VIEW 12011
#define IDM_OUTBOX_DELETE 10212
#define IDM_OUTBOX_SEND_NOW 10215
#define IDM_OUTBOX_DELETE_MESSAGES 10253
#define IDM_OUTBOX_COPY_TO_PHONEBOOK 10251
// Message view menu bars
#define IDM_VIEW_INBOX_NEW 10236
#define IDM_VIEW_OUTBOX_NEW 10238
#define IDM_VIEW_REPLY 10248
#define IDM_VIEW_FORWARD 10247
#define IDM_VIEW_INBOX_CALL 10241
#define IDM_VIEW_OUTBOX_CALL 10271
#define IDM_VIEW_DELETE 10242
#define IDM_VIEW_SEND_NOW 10249
#define IDM_VIEW_COPY_TO_PHONEBOOK 10272
// Composer
#define IDM_COMPOSE_PHONEBOOK 10257
#define IDM_FAVORITES_PHONEBOOK 12007
// Option lists' context menu (the Delete command shares its number with the Outbox's)
#define IDM_CONTEXT_NEW 12009
#define IDM_CONTEXT_EDIT 12008
#define IDM_CONTEXT_DELETE 10212
// Sending page
#define IDM_SERVICE_CENTERS 10265
// Cell Broadcast page
#define IDM_CHANNEL_ADD 12041
#define IDM_CHANNEL_DELETE 12040
// Commands numbered here (13000-13099)
#define IDM_EDIT_COPY 13001
#define IDM_EDIT_CUT 13002
#define IDM_EDIT_PASTE 13003
#define IDM_EDIT_SELECT_ALL 13004
#define IDM_EDIT_DELETE 13005
#define IDM_CB_VIEW 13010

// ---- Strings -----------------------------------------------------------------------------------
#define IDS_SERVICE_CENTERS 10015
#define IDS_CHARACTERS 10017
#define IDS_CHARACTER 10018
#define IDS_CONTACT_ADDED 10023
#define IDS_PHONEBOOK_ERROR 10025
#define IDS_SAMPLE_SC_NAME 10029
#define IDS_SAMPLE_SC_NUMBER 10030
#define IDS_MESSAGES 10040
#define IDS_MESSAGE 10041
#define IDS_TEMPLATE_NAME_EMPTY 10050
#define IDS_RESTORE_SERVICE_CENTRES_QUESTION 10055
#define IDS_RESTORE_VARIABLES_QUESTION 10057
#define IDS_OPTIONS 10096
#define IDS_REPLY_NOT_PREPAID 10099
#define IDS_REPLY_PREPAID 10100

// Message status texts (the lists and the view map status values to them)
#define IDS_STATUS_DELETED 10101
#define IDS_STATUS_DRAFT 10102
#define IDS_STATUS_FAILED 10103
#define IDS_STATUS_FORWARDED 10104
#define IDS_STATUS_INCOMPLETE 10105
#define IDS_STATUS_READ 10106
#define IDS_STATUS_REPLIED 10107
#define IDS_STATUS_SEND_NOW 10108
#define IDS_STATUS_SENT 10109
#define IDS_STATUS_UNKNOWN 10110
#define IDS_STATUS_UNREAD 10111
#define IDS_STATUS_NOT_SENT 10112

#define IDS_COLON 10138
#define IDS_INBOX 10148
#define IDS_SORT_CONTACT 10149
#define IDS_DATE 10150
#define IDS_FROM 10151
#define IDS_REPLY 10153
#define IDS_SCA 10154
#define IDS_STATUS 10155
#define IDS_TO 10157
#define IDS_VALIDITY 10158
#define IDS_NEW_VALUE_ROW 10159
#define IDS_OUTBOX 10160
#define IDS_SORT_BY 10163
#define IDS_VALIDITY_UNKNOWN 10164
#define IDS_SHOW 10165
#define IDS_ENTER_NAME_AND_NUMBER 10168
#define IDS_VIEW_DELETE_QUESTION 10240

#define IDS_VALIDITY_1_HOUR 10278
#define IDS_VALIDITY_6_HOURS 10279
#define IDS_VALIDITY_1_DAY 10280
#define IDS_VALIDITY_1_WEEK 10281
#define IDS_VALIDITY_MAXIMUM 10282

#define IDS_FOLDER_TOO_LARGE 10285
#define IDS_DELETE_MESSAGE_QUESTION 10286
#define IDS_INVALID_RECIPIENT 10287
#define IDS_RESTORE_TEMPLATES_QUESTION 10288

// Built-in variable names, read in this order; the last five are computed when sending
#define IDS_VAR_ENDING 10289
#define IDS_VAR_GREETING 10290
#define IDS_VAR_MEET 10291
#define IDS_VAR_MEETING_STATUS 10292
#define IDS_VAR_THANKS_FOR 10293
#define IDS_VAR_TIME_SPAN 10294
#define IDS_VAR_CONTACT 10295
#define IDS_VAR_DATE 10296
#define IDS_VAR_RECIPIENT 10297
#define IDS_VAR_SENDER 10298
#define IDS_VAR_TIME 10299
#define IDS_BUILTIN_VARIABLES_FIRST IDS_VAR_ENDING
#define IDS_COMPUTED_VARIABLES_FIRST IDS_VAR_CONTACT
#define IDS_BUILTIN_VARIABLES_LAST IDS_VAR_TIME

#define IDS_CHOOSE_FROM_PHONEBOOK 10301
#define IDS_UNKNOWN_SENDER 10302
#define IDS_CALL_FAILED 10303
#define IDS_OTHER_NEW_MESSAGES 10304
#define IDS_PM 10305
#define IDS_AM 10306

// Time offsets and date words of the Time and Date variables
#define IDS_TIME_IN_15_MINUTES 10307
#define IDS_TIME_IN_30_MINUTES 10308
#define IDS_TIME_IN_45_MINUTES 10309
#define IDS_TIME_IN_1_HOUR 10310
#define IDS_TIME_IN_1_HOUR_30_MINUTES 10311
#define IDS_TIME_IN_2_HOURS 10312
#define IDS_TIME_IN_3_HOURS 10313
#define IDS_TIME_IN_4_HOURS 10314
#define IDS_DATE_TODAY 10315
#define IDS_DATE_TOMORROW 10316
#define IDS_DATE_YESTERDAY 10317
#define IDS_CHOOSE 10318
#define IDS_TIME_NOW 10319 // the Time variable's word for the present moment

#define IDS_RECIPIENTS 10320
#define IDS_MESSAGE_WILL_BE_LOST 10321
#define IDS_SERVICE_CENTRE_EMPTY 10324

// Person fields of the Contact, Recipient and Sender variables
#define IDS_FIELD_FIRST_NAME 10325
#define IDS_FIELD_LAST_NAME 10326
#define IDS_FIELD_FULL_NAME 10327
#define IDS_FIELD_INITIALS 10328
#define IDS_FIELD_NAME_AND_PHONE 10329
#define IDS_FIELD_PHONE 10330

#define IDS_SEGMENT_OF 10331
#define IDS_MESSAGE_SENT 10332
#define IDS_MESSAGES_SENT 10333
#define IDS_MESSAGE_SEND_ERROR 10334
#define IDS_MESSAGES_SEND_ERROR 10335
#define IDS_DATE_ON 10336
#define IDS_ANOTHER_NEW_MESSAGE 10337

// Header words of the notification windows (also the ids of their header controls)
#define IDS_HEADER_SENDING 10338
#define IDS_HEADER_DATABASE 10339
#define IDS_HEADER_MESSAGE 10340
// Header of the message lists' text column
#define IDS_COLUMN_TEXT 10341

// Factory variables: one line each, walked from FIRST to LAST; the run closes with "END:" lines
#define IDS_FACTORY_VARIABLES_FIRST 11000
#define IDS_FACTORY_VARIABLES_LAST 11089

// Factory templates: name and body in pairs from FIRST; END holds the translators' end marker
#define IDS_FACTORY_TEMPLATES_FIRST 12001
#define IDS_FACTORY_TEMPLATES_END 12019
#define IDS_TEMPLATE_SIGNATURE 12009
#define IDS_TEMPLATE_GREETING 12011

#define IDS_SAVE_CHANGES_QUESTION 12044
#define IDS_SIM_ADDRESS_READ_ONLY 12045
#define IDS_INVALID_PHONE_CHARACTER 12049
#define IDS_CLEAR_FAVORITES 12058
#define IDS_SIM_ADDRESS_PROTECTED 12059
#define IDS_DELETE_SERVICE_CENTRE_QUESTION 12060
#define IDS_KIND_CALCULATING 12061
#define IDS_KIND_LIST_SELECTION 12062
#define IDS_SIM_TRANSFER_DONE 12063
#define IDS_TOO_MANY_DAYS 12064
#define IDS_VARIABLE_NAME_EMPTY 12065
#define IDS_VARIABLES_NOT_REPLACED 12068
#define IDS_SENDER_INFO_EMPTY 12069
#define IDS_TEMPLATE_BODY_EMPTY 12070
#define IDS_NUMBER_ALREADY_STORED 12071
#define IDS_INSERT_TEMPLATE 12073
#define IDS_TEMPLATE_EXISTS 12074
#define IDS_VARIABLE_WITHOUT_VALUES 12075
#define IDS_VARIABLE_NAME_BACKSLASH 12195
#define IDS_VARIABLE_NAME_TAKEN 12196
#define IDS_VARIABLE_LIMIT 12197
#define IDS_NOT_SENT 12198
#define IDS_CELLBROADCAST 12078
#define IDS_CB_QUERYING 12500
#define IDS_CB_CHANNEL_COLUMN 12501 // header of the cell broadcast list's channel column

// Cell broadcast languages; the first fifteen are offered on the Cell Broadcast page
#define IDS_LANG_ENGLISH 12512
#define IDS_LANG_GERMAN 12513
#define IDS_LANG_ITALIAN 12514
#define IDS_LANG_FRENCH 12515
#define IDS_LANG_SPANISH 12516
#define IDS_LANG_DUTCH 12517
#define IDS_LANG_DANISH 12518
#define IDS_LANG_PORTUGUESE 12519
#define IDS_LANG_SWEDISH 12520
#define IDS_LANG_FINNISH 12521
#define IDS_LANG_NORWEGIAN 12522
#define IDS_LANG_GREEK 12523
#define IDS_LANG_TURKISH 12524
#define IDS_LANG_HUNGARIAN 12525
#define IDS_LANG_POLISH 12526
#define IDS_LANG_CZECH 12527
#define IDS_LANG_HEBREW 12528
#define IDS_LANG_ARABIC 12529
#define IDS_LANG_RUSSIAN 12530
#define IDS_LANG_ICELANDIC 12531

// The application's title, in the framework's range
#define IDS_APP_TITLE 57344

// ---- Templates and Variables pages, Edit Template, Edit Variable -------------------------------
#define IDC_TEMPLATES_INSERT_GREETING 10402
#define IDC_TEMPLATES_INSERT_SIGNATURE 10403
#define IDC_TEMPLATES_LIST 10405
#define IDC_TEMPLATES_NEW 10406
#define IDC_VARIABLES_LIST 10410
#define IDC_VARIABLES_NEW 10411
#define IDC_EDIT_TEMPLATE_TITLE 10420
#define IDC_EDIT_TEMPLATE_NAME 10421
#define IDC_EDIT_TEMPLATE_VARIABLE 10422
#define IDC_EDIT_TEMPLATE_BODY 10423
#define IDC_EDIT_VARIABLE_TITLE 10430
#define IDC_EDIT_VARIABLE_NAME 10431
#define IDC_EDIT_VARIABLE_VALUES 10432
// Column headers of the Variables page
#define IDS_VARIABLES_COLUMN_NAME 10360
#define IDS_VARIABLES_COLUMN_KIND 10361

// ---- Find (main window, Tools) -----------------------------------------------------------------
#define IDD_SEARCH 12180
#define IDC_SEARCH_TEXT 12181  // what to find
#define IDC_SEARCH_COUNT 12182 // how many were found
#define IDC_SEARCH_LIST 12183  // the messages found, newest first
#define IDM_MAIN_FIND 12185
#define IDS_SEARCH_PROMPT 12190
#define IDS_SEARCH_NOTHING 12191
#define IDS_SEARCH_ONE 12192
#define IDS_SEARCH_MANY 12193

// Accessible names of buttons that show a picture instead of a text.
#define IDS_A11Y_SHOW_DETAILS 12300 // the down arrow of the composer and the message view
#define IDS_A11Y_HIDE_DETAILS 12301 // the up arrow
#define IDS_A11Y_FAVOURITES 12302   // the composer's favourites button
#define IDS_DELIVERED 12303         // the message view's delivery line
