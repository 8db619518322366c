<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Zentu::OptionDialog</name>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
</context>
</TS>
