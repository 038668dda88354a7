#pragma once
// The data-bound editors: each edits one field of the current row of its data source.

#include "choice_editors.h"
#include "currency_edit.h"
#include "date_edit.h"
#include "field_data_link.h"
#include "lookup_combo_box.h"
#include "text_editors.h"

using TDBTextEdit = TDBEdit<TTextEdit>;
using TDBMemo = TDBEdit<TMemo>;
using TDBButtonEdit = TDBEdit<TButtonEdit>;
using TDBLookupComboBox = TDBEdit<TLookupComboBox>;
using TDBDateEdit = TDBEdit<TDateEdit>;
using TDBCurrencyEdit = TDBEdit<TCurrencyEdit>;
using TDBCheckBox = TDBEdit<TCheckBoxEdit>;
using TDBRadioGroup = TDBEdit<TRadioGroup>;
