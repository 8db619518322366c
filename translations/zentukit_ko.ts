<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko_KR" sourcelanguage="en">
<context>
    <name>Zentu::OptionDialog</name>
    <message>
        <source>Options</source>
        <translation>옵션</translation>
    </message>
</context>
</TS>
