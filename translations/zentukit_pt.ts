<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_PT" sourcelanguage="en">
<context>
    <name>Zentu::OptionDialog</name>
    <message>
        <source>Options</source>
        <translation>Opções</translation>
    </message>
</context>
</TS>
