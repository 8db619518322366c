<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en">
<context>
    <name>Zentu::OptionDialog</name>
    <message>
        <source>Options</source>
        <translation>Параметры</translation>
    </message>
</context>
</TS>
