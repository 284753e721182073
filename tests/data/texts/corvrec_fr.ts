<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- A second string table for the tests, with one text only. -->
<TS version="2.1" language="fr_FR">
<context>
    <name>frmDettaglio messages</name>
    <message id="10722">
        <source></source>
        <translation>Samedi</translation>
    </message>
</context>
</TS>
