a { A In Default
 RC -1 99999999999 -5 } = -1 4294967296
 abc def;