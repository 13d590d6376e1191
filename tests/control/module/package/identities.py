"""What hosts have stored or compiled in, written down once more: the tests must not read it from the
list that the module is made of."""

LIBRARY_ID = "D87A57E5-81C3-11D5-97D8-0050BA8CAAD8"
CLASS_ID = "D87A57E7-81C3-11D5-97D8-0050BA8CAAD8"

# Name, minor version, interface id, source interface id.
GENERATIONS = [
    ("SecurityCtrl___v0", 0, "8B4B3B95-B3A0-11D5-8FF3-0060B0A44813",
     "8B4B3B96-B3A0-11D5-8FF3-0060B0A44813"),
    ("SecurityCtrl___v1", 1, "EC17EC29-D2B2-11D5-8FF8-0060B0A44813",
     "EC17EC2A-D2B2-11D5-8FF8-0060B0A44813"),
    ("SecurityCtrl___v2", 2, "5103B0F6-A5B6-4A93-9AE2-540EDE42B1A5",
     "F4EB5032-2EBB-452F-88F6-F22983FC911A"),
    ("SecurityCtrl___v3", 3, "00FA7AC7-F2CA-4FF8-A0C0-32A1B6CD9CC8",
     "2523D7D0-AA4D-464F-B664-DD302BED3A66"),
    ("SecurityCtrl___v4", 4, "7DE417FD-0A77-4BA2-BD4E-5F85AA09B23C",
     "9BE9FDA7-A04B-46F7-9116-BEA759100DCE"),
    ("SecurityCtrl___v5", 5, "5C69ABDC-AE9A-42FD-B8BB-E73136FDA81E",
     "96D616EE-8E13-45AC-BF50-8749B65F3BB2"),
    ("SecurityCtrl___v6", 6, "157C2BF2-EB9C-4784-8E33-7A2A11363C0C",
     "8279C7B2-34CE-4B4C-8CB7-A3074DC38CA2"),
    ("SecurityCtrl___v7", 7, "662ABC14-2300-424A-9285-DEAB2B004AFD",
     "F61A88E2-5A20-47B0-ADA1-02476C0D62E1"),
    ("SecurityCtrl___v8", 8, "7394FF21-F07A-4047-B2E7-8F2C001B7E4A",
     "878949A6-032F-4256-9C07-413602C4FEA2"),
    ("SecurityCtrl___v9", 9, "837C6A0D-12AB-4ABE-967E-E97D689B1751",
     "81E95369-10BD-440F-B081-9C0CD511AABD"),
    ("SecurityCtrl___v10", 10, "54CB573B-B960-4F71-ACF7-79EBC22C4E3C",
     "8D635294-B787-4108-9A1D-413372039790"),
    ("SecurityCtrl___v11", 11, "DFE7C31B-0349-4617-B766-AA9A5B9DCBA0",
     "DF787A3A-A77A-420A-9941-AC3BE7D2A7A9"),
    ("SecurityCtrl___v12", 12, "AC674024-4E4F-4659-B1CD-582009F4C24C",
     "19A1E102-28D8-400C-ACBD-616B747DDF78"),
    ("SecurityCtrl___v13", 13, "86FD65FD-06C7-4060-BCBA-7157F94EB51A",
     "1A552F4A-7433-43F3-9762-8102D89DB6B4"),
    ("SecurityCtrl___v14", 14, "EB5E841F-A4B5-40C4-AA9D-329848F7CEE5",
     "5A41FEC7-4BAB-49F4-B4C2-FBB392B1B61E"),
    ("SecurityCtrl___v15", 15, "8D7AE9D3-029C-4526-A961-272660BEE4F3",
     "49B76257-44DE-4984-9652-CCB74441B05C"),
    ("_SecurityCtrl", 16, "80A6F5ED-2A74-4AA0-BD7A-211CF85AECE2",
     "1D54DF39-6000-4448-ABCE-DA756E22FFF9"),
]

GET, PUT, FUNCTION = 2, 4, 1
TEXT, INTEGER16, BOOLEAN, INTEGER32 = 8, 2, 11, 3

# Name, kind, dispatch id, type, argument name of a put, help context.
MEMBERS = [
    ("ServerAddress", GET, 0x6803000D, TEXT, None, 0),
    ("ServerAddress", PUT, 0x6803000D, TEXT, "str_New_ServerAddress", 0),
    ("ServerPort", GET, 0x68030053, INTEGER16, None, 0),
    ("ServerPort", PUT, 0x68030053, INTEGER16, "int_New_ServerPort", 0),
    ("ServerFile", GET, 0x6803000C, TEXT, None, 600),
    ("ServerFile", PUT, 0x6803000C, TEXT, "str_New_ServerFile", 600),
    ("UseProxy", PUT, 0x68030048, BOOLEAN, "bolUseProxy", 0),
    ("UseProxy", GET, 0x68030048, BOOLEAN, None, 0),
    ("ProxyServer", PUT, 0x68030047, TEXT, "strProxyServer", 0),
    ("ProxyServer", GET, 0x68030047, TEXT, None, 0),
    ("UserName", PUT, 0x68030046, TEXT, "strUserName", 0),
    ("UserName", GET, 0x68030046, TEXT, None, 0),
    ("Password", PUT, 0x68030045, TEXT, "strPassword", 0),
    ("Password", GET, 0x68030045, TEXT, None, 0),
    ("GetCRCValue", FUNCTION, 0x6003005E, INTEGER32, None, 0),
]
